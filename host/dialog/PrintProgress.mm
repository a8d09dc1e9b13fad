#include "PrintProgress.h"

#include "Controls.h"
#include "CupsPrinting.h"
#include "Text.h"

static const CGFloat kWidth = 420, kHeight = 132, kMargin = 20;
static const NSTimeInterval kStateInterval = 1.0;

@implementation PrintProgress

- (instancetype)initWithQueue:(const std::string&)queue title:(NSString*)title
{
    self = [super init];
    queue_ = queue;
    window_ = makeWindow(NSMakeSize(kWidth, kHeight), @"Printing");
    CGFloat inner = kWidth - 2 * kMargin;
    NSTextField* heading = makeLabel(NSMakeRect(kMargin, 96, inner, 20), title, NSLeftTextAlignment);
    bar_ = [[[NSProgressIndicator alloc] initWithFrame:NSMakeRect(kMargin, 72, inner, 16)] autorelease];
    [bar_ setIndeterminate:NO];
    text_ = makeLabel(NSMakeRect(kMargin, 48, inner, 20), @"Sending", NSLeftTextAlignment);
    close_ = makeButton(NSMakeRect(kWidth - kMargin - 90, 14, 90, 26), @"Close", self, @selector(close:));
    [close_ setKeyEquivalent:@"\r"];
    [close_ setEnabled:NO];
    for (NSView* part in @[ heading, bar_, text_, close_ ])
        [[window_ contentView] addSubview:part];
    [window_ center];
    [window_ makeKeyAndOrderFront:nil];
    [window_ display];
    return self;
}

- (void)dealloc
{
    [window_ release];
    [super dealloc];
}

- (void)showState:(NSTimer*)timer
{
    JobState state = jobState(queue_, job_);
    [text_ setStringValue:[NSString stringWithFormat:@"Job %d: %@", job_, stringOf(state.text)]];
    if (state.ended) {
        [timer_ invalidate];
        timer_ = nil;
    }
}

- (void)followJob:(int)job
{
    job_ = job;
    [bar_ setDoubleValue:100];
    [close_ setEnabled:YES];
    timer_ = [NSTimer timerWithTimeInterval:kStateInterval
                                     target:self
                                   selector:@selector(showState:)
                                   userInfo:nil
                                    repeats:YES];
    [[NSRunLoop currentRunLoop] addTimer:timer_ forMode:NSModalPanelRunLoopMode];
    [self showState:timer_];
    [NSApp runModalForWindow:window_];
    [timer_ invalidate];
    timer_ = nil;
    [window_ orderOut:nil];
}

- (void)close:(id)sender
{
    [NSApp stopModal];
}

@end
