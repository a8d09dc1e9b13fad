#include "DialogController.h"

#include "Text.h"

static NSString* printerError(const Options& options, NSString* reason)
{
    return
        [NSString stringWithFormat:options.printer.empty() ? @"The PPD cannot be opened: %@" : @"%@", reason];
}

@implementation DialogController

- (instancetype)initWithOptions:(const Options&)options error:(NSString**)error
{
    self = [super init];
    options_ = options;
    queue_ = options.printer;
    settings_ = [[PMSettingsObject alloc] init];
    presets_ = [[Presets alloc] init];
    plugIn_ = [[PlugIn alloc] initWithPath:stringOf(options.plugin) error:error];
    if (plugIn_ != nil)
        printer_ = [self newPrinterWithError:error];
    if (printer_ == nil || ![self readSettingsWithError:error]) {
        [self release];
        return nil;
    }
    window_ = [[DialogWindow alloc] initWithTarget:self title:[self windowTitle]];
    [window_ setCopies:1 pageRanges:@""];
    [self showCopies];
    [[window_ pages] addItemsWithTitles:@[ @"Color Options", @"Summary" ]];
    [self listPrinters];
    [self listPresetsAndSelect:nil];
    [[window_ window] makeKeyAndOrderFront:nil];
    return self;
}

- (void)dealloc
{
    [plugIn_ release];
    [settings_ release];
    [printer_ release];
    [session_ release];
    [window_ release];
    [summary_ release];
    [presets_ release];
    [preset_ release];
    [super dealloc];
}

- (NSString*)jobTitle
{
    if (options_.files.empty())
        return @"";
    NSString* first = [stringOf(options_.files[0]) lastPathComponent];
    return options_.files.size() == 1
               ? first
               : [NSString stringWithFormat:@"%@ and %zu more", first, options_.files.size() - 1];
}

- (NSString*)windowTitle
{
    NSString* job = [self jobTitle];
    return [job length] == 0 ? @"Print" : [NSString stringWithFormat:@"Print %@", job];
}

- (PMPrinterObject*)newPrinterWithError:(NSString**)error
{
    NSString* reason = nil;
    PMPrinterObject* printer =
        queue_.empty()
            ? [[PMPrinterObject alloc]
                  initWithIdentifier:stringOf(options_.queue)
                           deviceURI:options_.deviceUri.empty() ? nil : stringOf(options_.deviceUri)
                                file:stringOf(options_.ppd)
                               error:&reason]
            : [[PMPrinterObject alloc] initWithQueue:stringOf(queue_) error:&reason];
    if (printer == nil)
        *error = printerError(options_, reason);
    return printer;
}

/// A settings file that does not exist yet is written at the end.
- (BOOL)readSettingsWithError:(NSString**)error
{
    NSString* path = stringOf(options_.settings);
    if ([path length] == 0 || ![[NSFileManager defaultManager] fileExistsAtPath:path])
        return YES;
    NSDictionary* values = [PMSettingsObject valuesOfFile:path error:error];
    if (values != nil)
        [settings_ replaceValues:values];
    return values != nil;
}

#pragma mark The panel

- (NSUInteger)openPanel
{
    [self terminatePanel];
    session_ = [[PanelSession alloc] initWithPlugIn:plugIn_ settings:settings_ printer:printer_];
    return [[session_ panels] count];
}

- (id<PDEPanelProtocol>)panel
{
    return [session_ panel];
}

- (PlugIn*)plugIn
{
    return plugIn_;
}

- (NSView*)showPanelView
{
    NSView* view = [[session_ panel] panelView];
    if (view != nil && [view superview] == nil)
        [window_ showPage:view];
    return view;
}

- (void)showPageAtIndex:(NSInteger)index
{
    [[window_ pages] selectItemAtIndex:index];
    if (index == 1)
        [self showSummary];
    else
        [self showPanelView];
}

- (void)showSomePage
{
    if (![window_ hasPage])
        [self showPanelView];
}

- (void)terminatePanel
{
    if (session_ == nil)
        return;
    [window_ showPage:nil];
    [session_ terminate];
    [session_ release];
    session_ = nil;
}

- (BOOL)printerHasPanelOptions
{
    for (NSString* key in [[session_ panel] supportedPPDOptionKeys])
        if (ppdFindOption([printer_ ppdFile], [key UTF8String]) != nullptr)
            return YES;
    return NO;
}

- (void)showPanel
{
    [self openPanel];
    id<PDEPanelProtocol> panel = [session_ panel];
    NSString* name = [panel panelName];
    [[window_ pages] removeAllItems];
    [[window_ pages] addItemsWithTitles:@[ name != nil ? name : @"Color Options", @"Summary" ]];
    if (![self printerHasPanelOptions]) {
        [window_ showNotice:@"This printer has no color options."];
        return;
    }
    NSView* view = [panel panelView];
    [panel restoreValuesAndReturnError:nullptr];
    [panel willShow];
    [window_ showPage:view];
}

- (void)showSummary
{
    if (summary_ == nil) {
        NSSize size = [window_ pageSize];
        summary_ = [[SummaryView alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)];
    }
    [summary_ showSummary:[[session_ panel] summaryInfo]];
    [window_ showPage:summary_];
}

#pragma mark Print settings

- (PMSettingsObject*)settings
{
    return settings_;
}

/// Copies and pages travel in the settings, so that presets keep them.
- (void)takeCopies
{
    NSString* copies = [window_ copies] == 1 ? nil : [NSString stringWithFormat:@"%d", [window_ copies]];
    NSString* ranges = [[window_ pageRanges] length] == 0 ? nil : [window_ pageRanges];
    PMPrintSettingsSetValue([settings_ handle], CFSTR("copies"), copies, false);
    PMPrintSettingsSetValue([settings_ handle], CFSTR("page-ranges"), ranges, false);
}

- (void)showCopies
{
    id copies = [[settings_ values] objectForKey:@"copies"];
    id ranges = [[settings_ values] objectForKey:@"page-ranges"];
    [window_ setCopies:[copies isKindOfClass:[NSString class]] ? [copies intValue] : 1
            pageRanges:[ranges isKindOfClass:[NSString class]] ? ranges : @""];
}

- (BOOL)loadSettings:(NSString*)path error:(NSString**)error
{
    NSDictionary* values = [PMSettingsObject valuesOfFile:path error:error];
    if (values == nil)
        return NO;
    [settings_ replaceValues:values];
    [self showCopies];
    return YES;
}

- (BOOL)writeSettings
{
    return options_.settings.empty() || [settings_ writeToFile:stringOf(options_.settings)];
}

- (std::map<std::string, std::string>)jobOptions
{
    std::map<std::string, std::string> result;
    NSDictionary* values = [settings_ values];
    for (NSString* key in values)
        if ([[values objectForKey:key] isKindOfClass:[NSString class]])
            result[textOf(key)] = textOf([values objectForKey:key]);
    return result;
}

#pragma mark Printing

- (void)finishPanelForPrinting
{
    id<PDEPanelProtocol> panel = [session_ panel];
    [self takeCopies];
    [panel saveValuesAndReturnError:nullptr];
    [panel shouldHide];
    [panel shouldPrint];
    [self terminatePanel];
}

- (JobResult)submitJob
{
    if (queue_.empty())
        return {};
    return submitJob({queue_, textOf([self jobTitle]), options_.files, [self jobOptions]});
}

- (NSWindow*)frontWindow
{
    NSWindow* modal = [NSApp modalWindow];
    return modal != nil ? modal : [window_ window];
}

@end
