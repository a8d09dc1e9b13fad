#include "profilewindow/ProfileControl+Private.h"

#include "profiles/DriverPaths.h"
#include "profiles/ProfileEdits.h"
#include "profiles/ProfileName.h"
#include "profilewindow/KeyFilters.h"

#include <initializer_list>

@implementation ProfileControl (Editing)

- (IBAction)profileMenu:(id)sender
{
    [_profileTableView deselectAll:nil];
    [self vProfileSettingsClearEditText];
    [self vHandlingButtonSetDisable:YES edit:NO delete:NO];
    [_profileTableView reloadData];
}

#pragma mark Beginning an edit

- (void)beginEdit:(SInt32)mode inField:(NSTextField*)field
{
    [_profileMenu setEnabled:NO];
    [self vHandlingButtonSetDisable:NO edit:NO delete:NO];
    [self setEditMode:mode];
    [_profileManagementWindow makeFirstResponder:field];
}

- (IBAction)addButton:(id)sender
{
    [self vProfileSettingsClearEditText];
    [self vProfileSettingsAllEnablePart];
    // The file name enables it.
    [_localOK setEnabled:NO];
    [self beginEdit:kAdding inField:_fileNameEdit];
}

- (IBAction)editButton:(id)sender
{
    BOOL custom = [self isCustomProfile];
    [self vProfileSettingsAllEnablePart];
    if (custom) {
        for (NSControl* control : std::initializer_list<NSControl*>{_fileNameText, _locationText,
                                                                    _fileNameEdit, _locationMenu, _browse})
            [control setEnabled:NO];
    }
    [self beginEdit:kEditing inField:custom ? _profileNameEdit : _fileNameEdit];
}

- (IBAction)browseButton:(id)sender
{
    NSOpenPanel* panel = [NSOpenPanel openPanel];
    [panel setDirectoryURL:[NSURL fileURLWithPath:@(profileFolder().c_str())]];
    NSInteger answer = [panel runModal];
    NSString* name = [[[[panel URLs] lastObject] path] lastPathComponent];
    if (answer != NSModalResponseOK || name == nil)
        return;
    [self setText:@"" ofField:_fileNameEdit];
    [_localOK setEnabled:NO];
    std::u16string units([name length], u'\0');
    [name getCharacters:reinterpret_cast<unichar*>(units.data()) range:NSMakeRange(0, units.size())];
    if (!isBrowsedNameAccepted(units))
        return;
    [self setText:name ofField:_fileNameEdit];
    [_localOK setEnabled:YES];
}

#pragma mark Ending an edit

/// The record to be written: a slot taken for a new one, or the selected one, noted as replaced.
- (ProfileRecord*)takeEditedRecordOf:(ProfileList*)list
{
    if (buttonIdentify == kAdding)
        return addByHand(*list, recordByHand(kOnDisk));
    ProfileRecord* record = [self selectedRecord];
    if (record != nullptr && [self usesPapLists])
        appendCopy(*[self currentDeleteDict], *record);
    return record;
}

/// Back to browsing, with nothing selected.
- (void)endEdit
{
    [self vProfileSettingsClearEditText];
    [_profileMenu setEnabled:YES];
    [self vHandlingButtonSetDisable:YES edit:NO delete:NO];
    [self vProfileSettingsAllDisablePart];
    [_profileTableView reloadData];
    [self selectNoRow];
    [self setEditMode:kBrowsing];
}

- (IBAction)profileOK:(id)sender
{
    ProfileList* list = [self currentProfileDict];
    std::string fileName = [[_fileNameEdit stringValue] UTF8String];
    std::string profileName = [[_profileNameEdit stringValue] UTF8String];
    if (list == nullptr || fileName.empty() || fileName[0] == '.')
        return;
    SInt32 location = [_locationMenu indexOfSelectedItem] != 0 ? kOnCard : kOnDisk;
    long edited = buttonIdentify == kEditing ? [_profileTableView selectedRow] : -1;
    if (hasRowWithFile(*list, fileName, location, edited))
        return;
    ProfileRecord* record = [self takeEditedRecordOf:list];
    if (record == nullptr)
        return;
    if (buttonIdentify == kAdding || !isCustom(*record)) {
        setNameText(record->FileName, fileName, kProfileNameSize);
        record->Location = location;
    }
    setNameText(record->ProfileName, profileName, kProfileNameSize);
    [self endEdit];
}

- (IBAction)profileCancel:(id)sender
{
    [self endEdit];
}

- (IBAction)deleteButton:(id)sender
{
    [self vHandlingButtonSetDisable:YES edit:NO delete:NO];
    [self vProfileSettingsAllDisablePart];
    ProfileRecord* record = [self selectedRecord];
    if (record == nullptr)
        return;
    if ([self usesPapLists])
        appendCopy(*[self currentDeleteDict], *record);
    removeRow(*[self currentProfileDict], [_profileTableView selectedRow]);
    [_profileTableView reloadData];
    if ([_profileTableView selectedRow] >= 0)
        [_profileTableView deselectRow:[_profileTableView selectedRow]];
}

@end
