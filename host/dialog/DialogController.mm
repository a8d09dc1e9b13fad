#include "DialogController.h"

#include "Text.h"

static const NSTimeInterval kPause = 0.2;

@implementation DialogController

- (instancetype)initWithOptions:(const Options&)options error:(NSString**)error
{
    self = [super init];
    options_ = options;
    queue_ = options.printer;
    settings_ = [[PMSettingsObject alloc] init];
    remembered_ = [[Presets alloc] initWithFolder:@"printers"];
    plugIn_ = [[PlugIn alloc] initWithPath:stringOf(options.plugin) error:error];
    if (plugIn_ != nil)
        printer_ = [self newFirstPrinterWithError:error];
    if (printer_ == nil || ![self readSettingsWithError:error]) {
        [self release];
        return nil;
    }
    window_ = [[DialogWindow alloc] initWithTarget:self title:[self windowTitle]];
    [self showCopies];
    [[window_ pages] addItemsWithTitles:@[
        localized(@"Color Options"), localized(@"Paper & Finishing"), localized(@"Summary")
    ]];
    [self listPrinters];
    [self listPresetsAndSelect:nil];
    [[window_ window] makeKeyAndOrderFront:nil];
    return self;
}

- (void)dealloc
{
    [NSObject cancelPreviousPerformRequestsWithTarget:self];
    [[NSNotificationCenter defaultCenter] removeObserver:self];
    [plugIn_ release];
    [settings_ release];
    [printer_ release];
    [session_ release];
    [window_ release];
    [paper_ release];
    [summary_ release];
    [presets_ release];
    [remembered_ release];
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
               : [NSString stringWithFormat:localized(@"%@ and %zu more"), first, options_.files.size() - 1];
}

- (NSString*)windowTitle
{
    NSString* job = [self jobTitle];
    return [job length] == 0 ? localized(@"Print") : [NSString stringWithFormat:localized(@"Print %@"), job];
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

- (DialogWindow*)window
{
    return window_;
}

- (NSWindow*)frontWindow
{
    NSWindow* modal = [NSApp modalWindow];
    return modal != nil ? modal : [window_ window];
}

#pragma mark The panel and the other pages

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

- (void)showPage:(DialogPage)page
{
    [[window_ pages] selectItemAtIndex:page];
    if (page == kSummaryPage)
        [self showSummary];
    else if (page == kPaperPage)
        [window_ showPage:[self paperPage]];
    else if ([session_ offersOptionsOf:printer_])
        [self showPanelView];
    else
        [window_ showNotice:localized(@"This printer has no color options.")];
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
    [paper_ release];
    paper_ = nil;
}

- (void)showPanel
{
    [window_ showNotice:localized(@"Looking for profiles on the printer…")];
    [[window_ window] display];
    // The panel's view may take seconds to come. The window is on screen only after the run loop has turned.
    [self performSelector:@selector(showPanelNow) withObject:nil afterDelay:0.1];
}

- (void)showPanelNow
{
    [self recallChoices];
    [self openPanel];
    id<PDEPanelProtocol> panel = [session_ panel];
    if (NSString* name = [panel panelName])
        [[[window_ pages] itemAtIndex:kPanelPage] setTitle:name];
    if ([session_ offersOptionsOf:printer_]) {
        [panel panelView];
        [panel restoreValuesAndReturnError:nullptr];
        [panel willShow];
    }
    [self putUpChoices];
    [self showPage:kPanelPage];
    (void)[self noteConflict];
    [[NSNotificationCenter defaultCenter] addObserver:self
                                             selector:@selector(eventHandled:)
                                                 name:NSApplicationDidUpdateNotification
                                               object:nil];
}

/// The panel does not tell when something is chosen in it: after each event of the user the choices are
/// looked at, once he pauses.
- (void)eventHandled:(NSNotification*)notification
{
    SEL look = @selector(userPaused);
    [NSObject cancelPreviousPerformRequestsWithTarget:self selector:look object:nil];
    [self performSelector:look withObject:nil afterDelay:kPause];
}

- (void)userPaused
{
    if (session_ != nil)
        (void)[self noteConflict];
    if (session_ != nil && [[window_ pages] indexOfSelectedItem] == kSummaryPage)
        [summary_ showRows:[self summary]];
}

- (NSArray*)summary
{
    NSMutableArray* rows = [NSMutableArray array];
    if ([window_ copies] > 1)
        [rows addObject:@[ localized(@"Copies"), [NSString stringWithFormat:@"%d", [window_ copies]] ]];
    if ([[window_ pageRanges] length] > 0)
        [rows addObject:@[ localized(@"Pages"), [window_ pageRanges] ]];
    NSDictionary* chosen = [session_ offersOptionsOf:printer_] ? [[session_ panel] summaryInfo] : nil;
    for (NSString* name in [chosen objectForKey:@"Summary Display Order"])
        [rows addObject:@[ name, [chosen objectForKey:name] ]];
    return [rows arrayByAddingObjectsFromArray:[[self paperPage] summary]];
}

- (void)showSummary
{
    if (summary_ == nil) {
        NSSize size = [window_ pageSize];
        summary_ = [[SummaryView alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)];
    }
    [summary_ showRows:[self summary]];
    [window_ showPage:summary_];
}

#pragma mark Print settings

- (PMSettingsObject*)settings
{
    return settings_;
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
    return submitJob([self printJob]);
}

- (PrintJob)printJob
{
    return {queue_, textOf([self jobTitle]), options_.files, [self jobOptions]};
}

@end
