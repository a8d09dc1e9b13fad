#include "DialogController.h"

#include "PageCount.h"
#include "PrintProgress.h"
#include "Prompts.h"
#include "Text.h"

@implementation DialogController (Actions)

- (void)pageChosen:(id)sender
{
    if (session_ != nil)
        [self showPage:static_cast<DialogPage>([[window_ pages] indexOfSelectedItem])];
}

- (void)cancel:(id)sender
{
    [self terminatePanel];
    [NSApp stop:nil];
}

- (BOOL)chooseFile
{
    NSOpenPanel* panel = [NSOpenPanel openPanel];
    [panel setTitle:localized(@"Print which file?")];
    if ([panel runModalForTypes:nil] != NSOKButton)
        return NO;
    options_.files = {textOf([panel filename])};
    [[window_ window] setTitle:[self windowTitle]];
    return YES;
}

- (void)showJobOptions
{
    NSMutableArray* rows = [NSMutableArray array];
    for (const auto& [name, value] : [self jobOptions])
        [rows addObject:@[ stringOf(name), stringOf(value) ]];
    showTable(localized(@"The sample printer does not print. A job would carry these options:"), rows);
}

/// What stands against printing, as the title and the text of an alert; nil when nothing does.
- (NSArray*)objection
{
    if ([window_ copies] == 0)
        return @[
            localized(@"The number of copies is not valid"),
            localized(@"Copies are a whole number from 1 to 9999.")
        ];
    if ([window_ pageRanges] == nil)
        return @[
            localized(@"The page range is not valid"),
            localized(@"Pages are numbers and ranges in ascending order, such as 1-3, 5.")
        ];
    [self listPrinters];
    if (NSString* problem = [self printerProblem])
        return @[
            localized(@"The job was not printed"),
            [NSString stringWithFormat:@"%@: %@", stringOf(queue_), problem]
        ];
    return nil;
}

- (BOOL)mayPrint
{
    if (session_ == nil)
        return NO;
    if (NSArray* objection = [self objection]) {
        NSRunAlertPanel([objection objectAtIndex:0], @"%@", localized(@"OK"), nil, nil,
                        [objection objectAtIndex:1]);
        [window_ selectWrongField];
        return NO;
    }
    NSString* conflict = [self noteConflict];
    if ([conflict length] > 0 &&
        NSRunAlertPanel(localized(@"Print anyway?"), @"%@", localized(@"Cancel"), localized(@"Print"), nil,
                        conflict) != NSAlertAlternateReturn)
        return NO;
    return queue_.empty() || !options_.files.empty() || [self chooseFile];
}

- (void)print:(id)sender
{
    if (![self mayPrint])
        return;
    [self finishPanelForPrinting];
    JobResult result = [self submitJob];
    if (!result.error.empty()) {
        NSRunAlertPanel(localized(@"The job was not printed"), @"%@", localized(@"OK"), nil, nil,
                        stringOf(result.error));
        [self showPanel];
        return;
    }
    [self rememberChoices];
    if (queue_.empty())
        [self showJobOptions];
    else
        followJob(queue_, result.id,
                  [NSString stringWithFormat:localized(@"%@ on %@"), [self jobTitle], stringOf(queue_)],
                  sidesOfJob([self printJob]));
    if (![self writeSettings])
        NSRunAlertPanel(localized(@"The print settings were not saved"), localized(@"%@ cannot be written."),
                        localized(@"OK"), nil, nil, stringOf(options_.settings));
    [NSApp stop:nil];
}

@end
