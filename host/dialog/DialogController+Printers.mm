#include "DialogController.h"

#include "Text.h"

#include <algorithm>

static const NSTimeInterval kListInterval = 5;

@implementation DialogController (Printers)

- (PMPrinterObject*)newPrinterWithError:(NSString**)error
{
    if (!queue_.empty())
        return [[PMPrinterObject alloc] initWithQueue:stringOf(queue_) error:error];
    if (options_.ppd.empty())
        options_.ppd = samplePpd();
    NSString* reason = nil;
    NSString* uri = options_.deviceUri.empty() ? nil : stringOf(options_.deviceUri);
    PMPrinterObject* printer = [[PMPrinterObject alloc] initWithIdentifier:stringOf(options_.queue)
                                                                 deviceURI:uri
                                                                      file:stringOf(options_.ppd)
                                                                     error:&reason];
    if (printer == nil)
        *error = [NSString stringWithFormat:localized(@"The PPD cannot be opened: %@"), reason];
    return printer;
}

/// A printer with another maker's PPD has none of the panel's options.
- (BOOL)panelServes:(PMPrinterObject*)printer
{
    PanelSession* session = [[PanelSession alloc] initWithPlugIn:plugIn_ settings:settings_ printer:printer];
    BOOL serves = [session offersOptionsOf:printer];
    [session terminate];
    [session release];
    return serves;
}

- (PMPrinterObject*)newFirstPrinterWithError:(NSString**)error
{
    BOOL named = !options_.printer.empty() || !options_.ppd.empty() || !options_.script.empty();
    std::vector<PrintQueue> queues;
    if (!named)
        queues = printQueues().value_or(queues);
    std::stable_partition(queues.begin(), queues.end(), [](const PrintQueue& q) { return q.isDefault; });
    for (const PrintQueue& queue : queues) {
        NSString* ignored = nil;
        queue_ = queue.name;
        PMPrinterObject* printer = [self newPrinterWithError:&ignored];
        if (printer != nil && (queue.isDefault || [self panelServes:printer]))
            return printer;
        [printer release];
        queue_.clear();
    }
    return [self newPrinterWithError:error];
}

- (NSString*)titleOfQueue:(const PrintQueue&)queue
{
    NSMutableArray* remarks = [NSMutableArray array];
    if (queue.isDefault)
        [remarks addObject:localized(@"default")];
    if (!queue.location.empty())
        [remarks addObject:stringOf(queue.location)];
    if (!queue.acceptsJobs)
        [remarks addObject:localized(@"takes no jobs")];
    else
        [remarks addObject:queue.isStopped    ? localized(@"stopped")
                           : queue.isPrinting ? localized(@"printing")
                                              : localized(@"ready")];
    return [NSString
        stringWithFormat:@"%@ – %@", stringOf(queue.description), [remarks componentsJoinedByString:@", "]];
}

- (BOOL)queueIsListed
{
    return queues_ && std::any_of(queues_->begin(), queues_->end(),
                                  [self](const PrintQueue& queue) { return queue.name == queue_; });
}

- (NSString*)printerProblem
{
    if (queue_.empty() || [self queueIsListed])
        return nil;
    return queues_ ? localized(@"no longer on the server")
                   : localized(@"the printing system does not answer");
}

- (void)showPrinters
{
    NSPopUpButton* popUp = [window_ printers];
    NSMenu* menu = [popUp menu];
    BOOL isSample = options_.ppd.empty() || options_.ppd == samplePpd();
    NSString* file = [stringOf(options_.ppd) lastPathComponent];
    [popUp removeAllItems];
    // Straight into the menu: the pop-up keeps one item for a title, and two printers may be called alike.
    [[menu addItemWithTitle:isSample ? localized(@"R4270 (sample printer)")
                                     : [NSString stringWithFormat:localized(@"%@ (PPD file)"), file]
                     action:nullptr
              keyEquivalent:@""] setRepresentedObject:@""];
    for (const PrintQueue& queue : queues_.value_or(std::vector<PrintQueue>()))
        [[menu addItemWithTitle:[self titleOfQueue:queue] action:nullptr
                  keyEquivalent:@""] setRepresentedObject:stringOf(queue.name)];
    if (NSString* problem = [self printerProblem])
        [[menu addItemWithTitle:[NSString stringWithFormat:@"%@ – %@", stringOf(queue_), problem]
                         action:nullptr
                  keyEquivalent:@""] setRepresentedObject:stringOf(queue_)];
    [popUp selectItemAtIndex:[popUp indexOfItemWithRepresentedObject:stringOf(queue_)]];
    [popUp setNeedsDisplay:YES];
}

- (void)listPrinters
{
    std::optional<std::vector<PrintQueue>> earlier = printQueues();
    std::swap(queues_, earlier);
    if (queues_ != earlier || [[window_ printers] numberOfItems] == 0)
        [self showPrinters];
    SEL again = @selector(listPrinters);
    [NSObject cancelPreviousPerformRequestsWithTarget:self selector:again object:nil];
    if (options_.script.empty())
        [self performSelector:again withObject:nil afterDelay:kListInterval];
}

// A pop-up's list stays open until its action returns, so what may ask the user something comes after it.
- (void)printerChosen:(id)sender
{
    [self performSelector:@selector(changePrinter) withObject:nil afterDelay:0];
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
        queue_ = earlier;
        [self showPrinters];
        NSRunAlertPanel(localized(@"This printer cannot be used"), @"%@", localized(@"OK"), nil, nil, reason);
        return;
    }
    [[self panel] saveValuesAndReturnError:nullptr];
    [self takeDownChoices];
    [self terminatePanel];
    [printer_ release];
    printer_ = printer;
    [self showPrinters];
    [self listPresetsAndSelect:nil];
    [self showPanel];
}

@end
