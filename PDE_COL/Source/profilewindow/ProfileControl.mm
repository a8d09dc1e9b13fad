#include "profilewindow/ProfileControl+Private.h"

#include "common/Menus.h"
#include "common/PDECommon.h"
#include "discovery/PDECommon+Discovery.h"
#include "discovery/ProtocolCode.h"
#include "panels/AdvancedColorOptions.h"
#include "panels/PresetConstraints.h"
#include "profiles/ProfileEdits.h"
#include "profiles/ProfileListOperations.h"
#include "profiles/ProfileName.h"
#include "profilewindow/IconedCell.h"
#include "profilewindow/KeyFilters.h"

#include <array>
#include <cstring>
#include <initializer_list>
#import <objc/runtime.h>

namespace {

constexpr CGFloat kCellFontSize = 12, kTableFontSize = 9;

} // namespace

@implementation ProfileControl

#pragma mark Static texts

/// The interface file's titles are the keys of the texts.
- (void)localizeTitlesIn:(NSView*)view
{
    if ([view isKindOfClass:[NSTableView class]]) {
        for (NSTableColumn* column in [(NSTableView*)view tableColumns])
            [[column headerCell] setStringValue:localizedText([[column headerCell] stringValue])];
    } else if ([view isKindOfClass:[NSBox class]]) {
        [(NSBox*)view setTitle:localizedText([(NSBox*)view title])];
    } else if ([view isKindOfClass:[NSTextField class]] && ![(NSTextField*)view isEditable]) {
        [(NSTextField*)view setStringValue:localizedText([(NSTextField*)view stringValue])];
    } else if ([view isKindOfClass:[NSButton class]] && ![view isKindOfClass:[NSPopUpButton class]]) {
        [(NSButton*)view setTitle:localizedText([(NSButton*)view title])];
    }
    for (NSView* subview in [view subviews])
        [self localizeTitlesIn:subview];
}

- (void)awakeFromNib
{
    [self localizeTitlesIn:[_profileManagementWindow contentView]];
    [_profileMenu removeAllItems];
    appendItems(_profileMenu, @[ localizedText(@"RGB"), localizedText(@"SIM"), localizedText(@"DST") ]);
    [_profileManagementWindow setDelegate:self];
    [_fileNameEdit setDelegate:self];
    [_profileNameEdit setDelegate:self];
    // What no text stands in front of. Not every toolkit speaks.
    SEL speak = NSSelectorFromString(@"setAccessibilityLabel:");
    if ([_profileTableView respondsToSelector:speak])
        [_profileTableView performSelector:speak withObject:localizedText(@"ProfileTitle")];
    [[_profileTableView tableColumnWithIdentifier:@"icon"] setHeaderToolTip:localizedText(@"On the printer")];
}

#pragma mark The panel's calls

- (void)setPMPrint:(PMPrintSettings)printSettings session:(PMPrintSession)printSession
{
    setting = printSettings;
    session = printSession;
}

- (void)setConstTable:(const PDEControlItem*)table
{
    constTable = table;
    constTableCount = 0;
    while (table != nullptr && table[constTableCount].control != nil)
        ++constTableCount;
}

- (IBAction)showProfileManagementWindow:(id)sender
{
    [self initWithProfileControl];
    [_profileManagementWindow setTitle:localizedText(@"ProfileTitle")];
    // Centred after the run, so that it is the next run that finds the window in the middle.
    [NSApp runModalForWindow:_profileManagementWindow];
    [_profileManagementWindow center];
}

#pragma mark Preparation

- (void)prepareControls
{
    NSString* disk = localizedText(@"Disk");
    if (disk != nil && localizedText(@"Card") != nil) {
        // Only profiles on the disk are registered by hand: the card is never offered.
        [_locationMenu removeAllItems];
        [_locationMenu addItemWithTitle:disk];
    }
    IconedCell* iconCell = [[[IconedCell alloc] init] autorelease];
    [[_profileTableView tableColumnWithIdentifier:@"icon"] setDataCell:iconCell];
    for (NSString* column in @[ @"filename", @"profilename", @"location" ]) {
        NSCell* cell = [[_profileTableView tableColumnWithIdentifier:column] dataCell];
        [cell setFont:[NSFont systemFontOfSize:kCellFontSize]];
    }
    [_profileMenu setEnabled:YES];
    [_profileMenu selectItemAtIndex:kRgbList];
    [self vProfileSettingsClearEditText];

    [_fileNameEdit setMaxLength:kLongestTypedName extension:kLongestTypedExtension];
    [_fileNameEdit setInputKey:kInputFileName];
    [_fileNameEdit setOperateControl:_localOK];
    [_profileNameEdit setMaxLength:kLongestTypedProfileName extension:0];
    [_profileNameEdit setInputKey:kInputAscii];

    [self vHandlingButtonSetDisable:YES edit:NO delete:NO];
    [_profileTableView setFont:[NSFont userFontOfSize:kTableFontSize]];
    [self vProfileSettingsAllDisablePart];
}

- (void)readLists
{
    ProfileList* lists[kProfileListCount] = {&plistRGBDict, &plistSIMDict, &plistDSTDict};
    ProfileList* deleted[kProfileListCount] = {&plistRGBDelete, &plistSIMDDelete, &plistDSTDelete};
    for (SInt32 index = kRgbList; index < kProfileListCount; ++index) {
        memset(lists[index], 0, sizeof *lists[index]);
        memset(deleted[index], 0, sizeof *deleted[index]);
        // A list that cannot be read is shown as far as it was read.
        if ([self usesPapLists])
            (void)VelPListReadProfile_Dict_Pap(lists[index], index);
        else
            (void)VelPListReadProfile_Dict(lists[index], index);
    }
}

- (void)initWithProfileControl
{
    [self setEditMode:kBrowsing];
    [onAdvancedView setControlValueToTicket];
    protocolType = [PDECommon commoniGetProtocol:session];
    [self prepareControls];
    [self readLists];
    [_profileTableView reloadData];
    [self selectNoRow];
}

#pragma mark Closing

- (void)closeWindow
{
    [NSApp stopModal];
    [_profileManagementWindow close];
}

- (IBAction)profileWindowOK:(id)sender
{
    // A refused write goes unreported; the panel then shows the lists as they are.
    if ([self usesPapLists])
        (void)VelPListWriteProfile_All_Pap(&plistRGBDict, &plistSIMDict, &plistDSTDict, &plistRGBDelete,
                                           &plistSIMDDelete, &plistDSTDelete);
    else
        (void)VelPListWriteProfile_All(&plistRGBDict, &plistSIMDict, &plistDSTDict);
    [onAdvancedView createPDEItemForPPDKey];
    [onAdvancedView getControlValueFromTicket];
    if (constTable != nullptr)
        vColorPresetConstraints(constTable);
    [self closeWindow];
}

- (IBAction)profileWindowCancel:(id)sender
{
    [self closeWindow];
}

/// The title bar's button is Cancel: closed otherwise, the window would leave its modal run behind. It has to
/// have one, as some window managers end a program whose window they were told to close and cannot ask.
- (BOOL)windowShouldClose:(id)sender
{
    [self profileWindowCancel:sender];
    return NO;
}

#pragma mark State of the controls

- (void)vHandlingButtonSetDisable:(BOOL)add edit:(BOOL)edit delete:(BOOL)remove
{
    [_addButton setEnabled:add];
    [_editButton setEnabled:edit];
    [_deleteButton setEnabled:remove];
}

- (void)setText:(NSString*)text ofField:(VelTextField*)field
{
    [field setStringValue:text];
    [field setOldString:text];
}

- (void)vProfileSettingsClearEditText
{
    [self setText:@"" ofField:_fileNameEdit];
    [self setText:@"" ofField:_profileNameEdit];
    [_locationMenu selectItemAtIndex:0];
}

- (void)enableEditArea:(BOOL)enabled
{
    for (NSControl* control :
         std::initializer_list<NSControl*>{_fileNameText, _profileNameText, _locationText, _fileNameEdit,
                                           _profileNameEdit, _locationMenu, _browse, _localCancel, _localOK})
        [control setEnabled:enabled];
}

- (void)setEditMode:(SInt32)mode
{
    buttonIdentify = mode;
    // Return and Escape end the edit while there is one, and the window's run at any other time: also where
    // the edit's own button is disabled, the window's does not get them.
    bool edits = mode != kBrowsing;
    [_localOK setKeyEquivalent:edits ? @"\r" : @""];
    [_localCancel setKeyEquivalent:edits ? @"\033" : @""];
    [_windowOK setKeyEquivalent:edits ? @"" : @"\r"];
    [_windowCancel setKeyEquivalent:edits ? @"" : @"\033"];
}

/// A field of some toolkits keeps these keys to itself.
- (BOOL)control:(NSControl*)control textView:(NSTextView*)textView doCommandBySelector:(SEL)command
{
    bool ends = sel_isEqual(command, @selector(insertNewline:)) ||
                sel_isEqual(command, @selector(cancelOperation:)) ||
                sel_isEqual(command, @selector(complete:));
    return ends && [_profileManagementWindow performKeyEquivalent:[NSApp currentEvent]];
}

- (void)vProfileSettingsAllDisablePart
{
    // A disabled field cannot keep the keyboard.
    [_profileManagementWindow makeFirstResponder:_profileTableView];
    [self enableEditArea:NO];
}

- (void)vProfileSettingsAllEnablePart
{
    [self enableEditArea:YES];
}

#pragma mark Lists

/// The one that the pop-up names; null when it names none.
- (ProfileList*)chosenOf:(std::array<ProfileList*, kProfileListCount>)lists
{
    auto index = (size_t)[_profileMenu indexOfSelectedItem];
    return index < lists.size() ? lists[index] : nullptr;
}

- (BOOL)usesPapLists
{
    return protocolType == kProtocolAppleTalk || protocolType == kProtocolUsb;
}

- (ProfileList*)currentProfileDict
{
    return [self chosenOf:{&plistRGBDict, &plistSIMDict, &plistDSTDict}];
}

- (ProfileList*)currentDeleteDict
{
    return [self chosenOf:{&plistRGBDelete, &plistSIMDDelete, &plistDSTDelete}];
}

- (ProfileRecord*)recordInRow:(NSInteger)row
{
    ProfileList* list = [self currentProfileDict];
    return list == nullptr ? nullptr : recordAtRow(*list, row);
}

- (ProfileRecord*)selectedRecord
{
    return [self recordInRow:[_profileTableView selectedRow]];
}

- (BOOL)isCustomProfile
{
    const ProfileRecord* record = [self selectedRecord];
    return record != nullptr && isCustom(*record);
}

- (void)selectNoRow
{
    [_profileTableView selectRowIndexes:[NSIndexSet indexSet] byExtendingSelection:NO];
}

- (NSString*)textOfName:(const char*)field
{
    NSString* text = [[[NSString alloc] initWithBytes:field
                                               length:strnlen(field, kProfileNameSize)
                                             encoding:NSUTF8StringEncoding] autorelease];
    return text != nil ? text : @"";
}

@end
