#pragma once

#include "common/ClassNames.h"
#include "common/ControlItem.h"
#include "profiles/ProfileRecord.h"

#include "profilewindow/VelTextField.h"

/// Edit mode of the window.
enum : SInt32 { kBrowsing = 0, kAdding = 1, kEditing = 2 };

/// The profile management window: shows the three profile lists, one at a time, and lets a person tick, add,
/// rename and delete profiles. It works on copies of the lists; only OK writes them back. Nothing that goes
/// wrong is reported: what cannot be done leaves the window as it was. Main thread only.
@interface ProfileControl
    : NSObject <NSTableViewDataSource, NSTableViewDelegate, NSTextFieldDelegate, NSWindowDelegate>
{
    PMPrintSettings setting;
    PMPrintSession session;
    SInt32 protocolType;
    const PDEControlItem* constTable;
    SInt32 constTableCount; // as `setting`, for the interface only
    IBOutlet NSWindow* _profileManagementWindow;
    IBOutlet AdvancedColorOptions* onAdvancedView;
    IBOutlet NSButton* _addButton;
    IBOutlet NSButton* _browse;
    IBOutlet NSButton* _deleteButton;
    IBOutlet NSButton* _editButton;
    IBOutlet NSBox* _editGroupBox;
    IBOutlet VelTextField* _fileNameEdit;
    IBOutlet VelTextField* _profileNameEdit;
    IBOutlet NSTextField* _fileNameText;
    IBOutlet NSTextField* _profileNameText;
    IBOutlet NSTextField* _locationText;
    IBOutlet NSButton* _localCancel;
    IBOutlet NSButton* _localOK;
    IBOutlet NSPopUpButton* _locationMenu;
    IBOutlet NSTableView* _profileTableView;
    IBOutlet NSPopUpButton* _profileMenu;
    IBOutlet NSButton* _windowCancel;
    IBOutlet NSButton* _windowOK;
    SInt32 buttonIdentify;
    ProfileList plistRGBDict;
    ProfileList plistSIMDict;
    ProfileList plistDSTDict;
    // Records deleted or replaced since the window was opened; AppleTalk and USB queues only.
    ProfileList plistRGBDelete;
    ProfileList plistSIMDDelete;
    ProfileList plistDSTDelete;
}

/// Not owned; must outlive the window. `table` may be null.
- (void)setPMPrint:(PMPrintSettings)printSettings session:(PMPrintSession)printSession;
- (void)setConstTable:(const PDEControlItem*)table;

/// Opens the window and returns when it is closed.
- (IBAction)showProfileManagementWindow:(id)sender;

/// Makes the window ready: lists read afresh, nothing selected, no edit begun. Not an initialiser.
- (void)initWithProfileControl __attribute__((objc_method_family(none)));

/// Writes the lists and brings the panel in line with them, then closes.
- (IBAction)profileWindowOK:(id)sender;
/// Closes; the lists stay as they were.
- (IBAction)profileWindowCancel:(id)sender;

/// Whether each button is enabled, whatever the name says.
- (void)vHandlingButtonSetDisable:(BOOL)add edit:(BOOL)edit delete:(BOOL)remove;
- (void)vProfileSettingsClearEditText;
- (void)vProfileSettingsAllDisablePart;
- (void)vProfileSettingsAllEnablePart;

/// The list that the pop-up shows; null when it shows none.
- (ProfileList*)currentProfileDict;
/// Whether the selected profile was found on the printer at some time.
- (BOOL)isCustomProfile;

@end

@interface ProfileControl (Editing)

/// The list was chosen in the pop-up.
- (IBAction)profileMenu:(id)sender;
- (IBAction)addButton:(id)sender;
- (IBAction)deleteButton:(id)sender;
- (IBAction)editButton:(id)sender;
/// Takes the name of a file of the person's choice; the file itself is not read.
- (IBAction)browseButton:(id)sender;
/// OK and Cancel of the edit area.
- (IBAction)profileOK:(id)sender;
- (IBAction)profileCancel:(id)sender;

@end
