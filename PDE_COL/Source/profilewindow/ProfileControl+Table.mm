#include "profilewindow/ProfileControl+Private.h"

#include "discovery/ProtocolCode.h"
#include "profiles/DriverPaths.h"
#include "profiles/PDECommon+Profiles.h"
#include "profiles/ProfileEdits.h"

namespace {

/// Loaded once, as soon as the file is there; nil until then.
NSImage* fileExistsImage()
{
    static NSImage* image = nil;
    if (image == nil)
        image = [[NSImage alloc] initWithContentsOfFile:@(fileExistsIcon().c_str())];
    return image;
}

} // namespace

@implementation ProfileControl (Table)

- (NSInteger)numberOfRowsInTableView:(NSTableView*)tableView
{
    const ProfileList* list = [self currentProfileDict];
    return list == nullptr ? 0 : usedSlots(*list);
}

- (id)tableView:(NSTableView*)tableView
    objectValueForTableColumn:(NSTableColumn*)tableColumn
                          row:(NSInteger)row
{
    NSString* column = [tableColumn identifier];
    const ProfileRecord* record = [self recordInRow:row];
    if (record == nullptr)
        return nil;
    if ([column isEqualToString:@"filename"])
        return [self textOfName:record->FileName];
    if ([column isEqualToString:@"profilename"])
        return [self textOfName:record->ProfileName];
    if ([column isEqualToString:@"location"])
        return locationWord(record->Location);
    if ([column isEqualToString:@"inmenu"])
        return [NSNumber numberWithInt:isListed(*record)];
    return nil;
}

/// Whether the row shows the icon: over other connections nobody knows what is on the printer.
- (bool)isOnPrinterInRow:(NSInteger)row
{
    const ProfileRecord* record = [self recordInRow:row];
    bool walked = protocolType == kProtocolBonjour || protocolType == kProtocolLpd;
    return walked && record != nullptr && isOnPrinter(*record);
}

- (void)tableView:(NSTableView*)tableView
    willDisplayCell:(id)cell
     forTableColumn:(NSTableColumn*)tableColumn
                row:(NSInteger)row
{
    if ([[tableColumn identifier] isEqualToString:@"icon"])
        [cell setImage:[self isOnPrinterInRow:row] ? fileExistsImage() : nil];
}

- (NSString*)tableView:(NSTableView*)tableView
        toolTipForCell:(NSCell*)cell
                  rect:(NSRect*)rect
           tableColumn:(NSTableColumn*)tableColumn
                   row:(NSInteger)row
         mouseLocation:(NSPoint)location
{
    bool icon = [[tableColumn identifier] isEqualToString:@"icon"] && [self isOnPrinterInRow:row];
    return icon ? localizedText(@"On the printer") : nil;
}

- (void)tableView:(NSTableView*)tableView
    setObjectValue:(id)object
    forTableColumn:(NSTableColumn*)tableColumn
               row:(NSInteger)row
{
    ProfileRecord* record = [self recordInRow:row];
    if (record != nullptr && [[tableColumn identifier] isEqualToString:@"inmenu"])
        setListed(*record, [object intValue] != 0);
}

- (void)tableViewSelectionDidChange:(NSNotification*)notification
{
    if ([_profileTableView selectedRow] >= 0)
        return;
    if (buttonIdentify == kBrowsing)
        [self vHandlingButtonSetDisable:YES edit:NO delete:NO];
    [self vProfileSettingsClearEditText];
}

- (BOOL)selectionShouldChangeInTableView:(NSTableView*)tableView
{
    return buttonIdentify == kBrowsing;
}

- (BOOL)tableView:(NSTableView*)tableView shouldSelectRow:(NSInteger)row
{
    const ProfileRecord* record = [self recordInRow:row];
    if (buttonIdentify == kBrowsing)
        [self vHandlingButtonSetDisable:YES edit:YES delete:YES];
    if (record == nullptr)
        return YES;
    if (isOnPrinter(*record))
        [self vHandlingButtonSetDisable:YES edit:YES delete:NO];
    [self setText:[self textOfName:record->FileName] ofField:_fileNameEdit];
    [self setText:[self textOfName:record->ProfileName] ofField:_profileNameEdit];
    if (record->Location == kOnDisk)
        [_locationMenu selectItemAtIndex:0];
    return YES;
}

@end
