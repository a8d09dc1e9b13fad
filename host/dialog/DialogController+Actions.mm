#include "DialogController.h"

#include "PrintProgress.h"
#include "Prompts.h"
#include "Text.h"

#include <cstdlib>

static NSString* const kDefaultPreset = @"Default Settings";
static NSString* const kSavePreset = @"Save Current Settings as Preset...";
static NSString* const kDeletePreset = @"Delete Preset";

@implementation DialogController (Actions)

- (void)listPrinters
{
    NSPopUpButton* popUp = [window_ printers];
    NSMenu* menu = [popUp menu];
    BOOL isSample = options_.ppd == samplePpd();
    NSString* title =
        isSample ? @"R4270 (sample printer)"
                 : [NSString stringWithFormat:@"%@ (PPD file)", [stringOf(options_.ppd) lastPathComponent]];
    [popUp removeAllItems];
    // Straight into the menu: the pop-up keeps one item for a title, and two printers may be called alike.
    [[menu addItemWithTitle:title action:nullptr keyEquivalent:@""] setRepresentedObject:@""];
    for (const PrintQueue& queue : printQueues())
        [[menu addItemWithTitle:stringOf(queue.description) action:nullptr
                  keyEquivalent:@""] setRepresentedObject:stringOf(queue.name)];
    NSInteger index = [popUp indexOfItemWithRepresentedObject:stringOf(queue_)];
    [popUp selectItemAtIndex:MAX(index, 0)];
}

// A pop-up's list stays open until its action returns, so what may ask the user something comes after it.
- (void)printerChosen:(id)sender
{
    [self performSelector:@selector(changePrinter) withObject:nil afterDelay:0];
}

- (void)presetChosen:(id)sender
{
    [self performSelector:@selector(changePreset) withObject:nil afterDelay:0];
}

- (void)changePrinter
{
    std::string earlier = queue_;
    NSString* reason = nil;
    queue_ = textOf([[[window_ printers] selectedItem] representedObject]);
    if (queue_ == earlier)
        return;
    PMPrinterObject* printer = [self newPrinterWithError:&reason];
    if (printer == nil) {
        NSRunAlertPanel(@"This printer cannot be used", @"%@", @"OK", nil, nil, reason);
        queue_ = earlier;
        [self listPrinters];
        return;
    }
    [[self panel] saveValuesAndReturnError:nullptr];
    [self terminatePanel];
    [printer_ release];
    printer_ = printer;
    [self showPanel];
}

#pragma mark Presets

- (void)listPresetsAndSelect:(NSString*)name
{
    NSPopUpButton* popUp = [window_ presets];
    [popUp removeAllItems];
    [popUp addItemWithTitle:kDefaultPreset];
    [popUp addItemsWithTitles:[presets_ names]];
    [popUp selectItemWithTitle:name != nil && [popUp itemWithTitle:name] != nil ? name : kDefaultPreset];
    [[popUp menu] addItem:[NSMenuItem separatorItem]];
    [popUp addItemWithTitle:kSavePreset];
    if ([popUp indexOfSelectedItem] > 0)
        [popUp addItemWithTitle:[NSString stringWithFormat:@"%@ \"%@\"", kDeletePreset, name]];
    [preset_ release];
    preset_ = [[popUp titleOfSelectedItem] copy];
}

- (void)changePreset
{
    NSPopUpButton* popUp = [window_ presets];
    NSInteger chosen = [popUp indexOfSelectedItem], save = [popUp indexOfItemWithTitle:kSavePreset];
    NSString* name = [[[popUp titleOfSelectedItem] retain] autorelease];
    // The line above is an item too, which the user can choose.
    if (chosen >= save - 1)
        [popUp selectItemWithTitle:preset_];
    if (chosen == save - 1)
        return;
    if (chosen == save) {
        [self savePreset];
    } else if (chosen > save) {
        [presets_ removePreset:preset_];
        [self listPresetsAndSelect:nil];
        [self applyValues:[NSDictionary dictionary]];
    } else {
        NSString* reason = nil;
        NSDictionary* values =
            chosen == 0 ? [NSDictionary dictionary] : [presets_ valuesOfPreset:name error:&reason];
        if (values == nil)
            NSRunAlertPanel(@"The preset cannot be read", @"%@", @"OK", nil, nil, reason);
        else
            [self applyValues:values];
        [self listPresetsAndSelect:values != nil ? name : nil];
    }
}

- (void)savePreset
{
    NSString* name = promptForName(@"Save the current settings as:", @"My Preset");
    if (name == nil)
        return;
    [self takeCopies];
    [[self panel] saveValuesAndReturnError:nullptr];
    BOOL reserved = [@[ kDefaultPreset, kSavePreset ] containsObject:name];
    if (reserved || ![presets_ save:settings_ name:name])
        NSRunAlertPanel(@"The preset was not saved", @"A preset cannot be stored as \"%@\".", @"OK", nil, nil,
                        name);
    [self listPresetsAndSelect:name];
}

- (void)applyValues:(NSDictionary*)values
{
    [settings_ replaceValues:values];
    [self showCopies];
    [[self panel] restoreValuesAndReturnError:nullptr];
    [self pageChosen:nil];
}

#pragma mark Pages and buttons

- (void)pageChosen:(id)sender
{
    if ([self panel] == nil || ![self printerHasPanelOptions])
        return;
    [self showPageAtIndex:[[window_ pages] indexOfSelectedItem]];
}

- (void)cancel:(id)sender
{
    [self terminatePanel];
    exit(EXIT_SUCCESS);
}

- (BOOL)chooseFile
{
    NSOpenPanel* panel = [NSOpenPanel openPanel];
    [panel setTitle:@"Print which file?"];
    if ([panel runModalForTypes:nil] != NSOKButton)
        return NO;
    options_.files = {textOf([panel filename])};
    [[window_ window] setTitle:[self windowTitle]];
    return YES;
}

- (void)showJobOptions
{
    NSMutableArray* names = [NSMutableArray array];
    NSMutableDictionary* table = [NSMutableDictionary dictionaryWithObject:names
                                                                    forKey:@"Summary Display Order"];
    for (const auto& [name, value] : [self jobOptions]) {
        [names addObject:stringOf(name)];
        [table setObject:stringOf(value) forKey:stringOf(name)];
    }
    showTable(@"The sample printer does not print. A job would carry these options:", table);
}

- (void)print:(id)sender
{
    if ([window_ pageRanges] == nil) {
        NSRunAlertPanel(@"These are no pages",
                        @"Pages are numbers and ranges in ascending order, such as 1-3, 5.", @"OK", nil, nil);
        return;
    }
    if (!queue_.empty() && options_.files.empty() && ![self chooseFile])
        return;
    [self finishPanelForPrinting];
    JobResult result;
    if (queue_.empty()) {
        [self showJobOptions];
    } else {
        NSString* title = [NSString stringWithFormat:@"%@ on %@", [self jobTitle], stringOf(queue_)];
        PrintProgress* progress = [[[PrintProgress alloc] initWithQueue:queue_ title:title] autorelease];
        result = [self submitJob];
        if (result.id > 0)
            [progress followJob:result.id];
    }
    if (!result.error.empty()) {
        NSRunAlertPanel(@"The job was not printed", @"%@", @"OK", nil, nil, stringOf(result.error));
        [self showPanel];
        return;
    }
    if (![self writeSettings])
        NSRunAlertPanel(@"The print settings were not saved", @"%@ cannot be written.", @"OK", nil, nil,
                        stringOf(options_.settings));
    exit(EXIT_SUCCESS);
}

@end
