#include "PrintProgress.h"

#include "Controls.h"
#include "CupsPrinting.h"
#include "Text.h"

#include <algorithm>

static const CGFloat kWidth = 440, kHeight = 132, kMargin = 20;
static const NSTimeInterval kStateInterval = 1.0;

/// What keeps a printer, in words; the keyword itself where there are none for it.
static NSString* wordsFor(const std::string& keyword)
{
    struct {
        const char* beginning; ///< a severity may follow
        NSString* words;
    } const reasons[] = {
        {"media-empty", localized(@"out of paper")},
        {"media-needed", localized(@"out of paper")},
        {"media-jam", localized(@"paper jam")},
        {"toner-empty", localized(@"out of toner")},
        {"cover-open", localized(@"a cover is open")},
        {"door-open", localized(@"a cover is open")},
        {"offline", localized(@"switched off or not connected")},
        {"connecting-to-device", localized(@"switched off or not connected")},
        {"paused", localized(@"paused by its administrator")},
    };
    for (const auto& reason : reasons)
        if (keyword.starts_with(reason.beginning))
            return reason.words;
    return stringOf(keyword);
}

static NSString* textOf(const JobState& state, int allPages)
{
    NSArray* phases = @[
        localized(@"waiting"), localized(@"held"), localized(@"printing"), localized(@"stopped"),
        localized(@"cancelled"), localized(@"aborted by the printing system"), localized(@"finished"),
        localized(@"no longer on the server")
    ];
    auto phase = static_cast<NSUInteger>(state.phase) - static_cast<NSUInteger>(JobPhase::Waiting);
    NSMutableArray* parts =
        [NSMutableArray arrayWithObject:[phases objectAtIndex:std::min(phase, [phases count] - 1)]];
    // Sides that are left blank between the copies are counted by the server only.
    if (state.pages > 0 && allPages >= state.pages)
        [parts addObject:[NSString stringWithFormat:localized(@"page %d of %d"), state.pages, allPages]];
    else if (state.pages > 0)
        [parts addObject:[NSString stringWithFormat:localized(@"page %d"), state.pages]];
    else if (allPages > 1)
        [parts addObject:[NSString stringWithFormat:localized(@"%d pages"), allPages]];
    for (const std::string& reason : state.printerReasons)
        if (reason != "none" && state.phase < JobPhase::Cancelled)
            [parts addObject:[NSString stringWithFormat:localized(@"the printer has stopped: %@"),
                                                        wordsFor(reason)]];
    return [parts componentsJoinedByString:@", "];
}

/// The modal window of one job.
@interface PrintProgress : NSObject
{
    NSWindow* window_;
    NSTextField* text_;
    NSProgressIndicator* bar_;
    NSButton* cancel_;
    NSTimer* timer_;
    std::string queue_;
    int job_;
    int pages_;
}
@end

@implementation PrintProgress

- (instancetype)initWithQueue:(const std::string&)queue job:(int)job title:(NSString*)title pages:(int)pages
{
    self = [super init];
    queue_ = queue;
    job_ = job;
    pages_ = pages;
    window_ = makeWindow(NSMakeSize(kWidth, kHeight), localized(@"Printing"));
    CGFloat inner = kWidth - 2 * kMargin;
    NSTextField* heading = makeLabel(NSMakeRect(kMargin, 96, inner, 20), title, NSLeftTextAlignment);
    bar_ = [[[NSProgressIndicator alloc] initWithFrame:NSMakeRect(kMargin, 76, inner, 16)] autorelease];
    [bar_ setIndeterminate:NO];
    text_ = makeLabel(NSMakeRect(kMargin, 48, inner, 20), @"", NSLeftTextAlignment);
    cancel_ =
        makeButton(NSMakeRect(kMargin, 14, 140, 26), localized(@"Cancel Job"), self, @selector(cancel:));
    NSButton* close = makeButton(NSMakeRect(kWidth - kMargin - 100, 14, 100, 26), localized(@"Close"), self,
                                 @selector(close:));
    [close setKeyEquivalent:@"\r"];
    for (NSView* part in @[ heading, bar_, text_, cancel_, close ])
        [[window_ contentView] addSubview:part];
    [window_ setInitialFirstResponder:close];
    [window_ setDelegate:(id)self];
    [window_ center];
    return self;
}

- (void)dealloc
{
    [window_ setDelegate:nil];
    [window_ release];
    [super dealloc];
}

- (void)showState:(NSTimer*)timer
{
    std::optional<JobState> state = jobState(queue_, job_);
    NSString* text = state ? textOf(*state, pages_) : localized(@"the printing system does not answer");
    [text_ setStringValue:[NSString stringWithFormat:localized(@"Job %d: %@"), job_, text]];
    if (!state)
        return;
    if (pages_ > 0)
        [bar_ setDoubleValue:100.0 * state->pages / pages_];
    if (state->phase == JobPhase::Finished)
        [bar_ setDoubleValue:100];
    BOOL ended = state->phase >= JobPhase::Cancelled;
    [cancel_ setEnabled:!ended];
    if (ended)
        [timer_ invalidate];
}

- (void)run
{
    timer_ = [NSTimer timerWithTimeInterval:kStateInterval
                                     target:self
                                   selector:@selector(showState:)
                                   userInfo:nil
                                    repeats:YES];
    [[NSRunLoop currentRunLoop] addTimer:timer_ forMode:NSModalPanelRunLoopMode];
    [self showState:timer_];
    [NSApp runModalForWindow:window_];
    [timer_ invalidate];
    [window_ orderOut:nil];
}

- (void)cancel:(id)sender
{
    cancelJob(queue_, job_);
    [self showState:timer_];
}

- (void)close:(id)sender
{
    [NSApp stopModal];
}

- (BOOL)windowShouldClose:(id)sender
{
    [NSApp stopModal];
    return NO;
}

@end

void followJob(const std::string& queue, int job, NSString* title, int pages)
{
    PrintProgress* progress = [[PrintProgress alloc] initWithQueue:queue job:job title:title pages:pages];
    [progress run];
    [progress release];
}
