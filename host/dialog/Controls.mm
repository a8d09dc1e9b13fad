#include "Controls.h"

#include <cmath>

static const CGFloat kRowTolerance = 4;

static CGFloat topOf(NSView* view)
{
    return NSMaxY([view convertRect:[view bounds] toView:nil]);
}

/// From the top down, then from left to right.
static NSComparisonResult compareInReading(NSView* one, NSView* other, void*)
{
    CGFloat lower = topOf(other) - topOf(one);
    if (std::abs(lower) <= kRowTolerance)
        lower = NSMinX([one convertRect:[one bounds] toView:nil]) - NSMinX([other convertRect:[other bounds]
                                                                                       toView:nil]);
    return lower < 0 ? NSOrderedAscending : NSOrderedDescending;
}

static void collectKeyViews(NSView* view, NSMutableArray* found)
{
    if ([view canBecomeKeyView])
        [found addObject:view];
    if (![view isKindOfClass:[NSControl class]]) // a field that is edited holds its editor
        for (NSView* part in [view subviews])
            collectKeyViews(part, found);
}

/// A window whose keyboard order is where its controls are. The toolkit keeps an order that it has made once,
/// but the panel swaps views and tabs; back from a page of tabs it would leave out what lies before.
@interface KeyboardWindow : NSWindow
@end

@implementation KeyboardWindow

- (void)moveFocusFrom:(id)view forward:(BOOL)forward
{
    NSMutableArray* views = [NSMutableArray array];
    collectKeyViews([self contentView], views);
    [views sortUsingFunction:reinterpret_cast<NSComparisonResult (*)(id, id, void*)>(compareInReading)
                     context:nullptr];
    NSUInteger count = [views count], index = [views indexOfObject:view];
    if (count == 0)
        return;
    id next = [views objectAtIndex:index == NSNotFound ? 0 : (index + (forward ? 1 : count - 1)) % count];
    [self makeFirstResponder:next];
    if ([next respondsToSelector:@selector(selectText:)])
        [next selectText:self];
}

- (void)selectNextKeyView:(id)sender
{
    [self moveFocusFrom:[self firstResponder] forward:YES];
}

- (void)selectPreviousKeyView:(id)sender
{
    [self moveFocusFrom:[self firstResponder] forward:NO];
}

- (void)selectKeyViewFollowingView:(NSView*)view
{
    [self moveFocusFrom:view forward:YES];
}

- (void)selectKeyViewPrecedingView:(NSView*)view
{
    [self moveFocusFrom:view forward:NO];
}

@end

NSWindow* makeWindow(NSSize size, NSString* title)
{
    NSWindow* window =
        [[KeyboardWindow alloc] initWithContentRect:NSMakeRect(100, 100, size.width, size.height)
                                          styleMask:NSTitledWindowMask | NSClosableWindowMask
                                            backing:NSBackingStoreBuffered
                                              defer:NO];
    [window setReleasedWhenClosed:NO];
    [window setTitle:title];
    return window;
}

NSTextField* makeLabel(NSRect frame, NSString* text, NSTextAlignment alignment)
{
    NSTextField* label = makeField(frame, text);
    [label setEditable:NO];
    [label setSelectable:NO];
    [label setBezeled:NO];
    [label setDrawsBackground:NO];
    [label setAlignment:alignment];
    return label;
}

NSTextField* makeField(NSRect frame, NSString* text)
{
    NSTextField* field = [[[NSTextField alloc] initWithFrame:frame] autorelease];
    [field setStringValue:text];
    [field setFont:[NSFont systemFontOfSize:12]];
    return field;
}

NSButton* makeButton(NSRect frame, NSString* title, id target, SEL action)
{
    NSButton* button = [[[NSButton alloc] initWithFrame:frame] autorelease];
    [button setTitle:title];
    [button setFont:[NSFont systemFontOfSize:12]];
    [button setBezelStyle:NSRoundedBezelStyle];
    [button setTarget:target];
    [button setAction:action];
    return button;
}

NSPopUpButton* makePopUp(NSRect frame, id target, SEL action)
{
    NSPopUpButton* popUp = [[[NSPopUpButton alloc] initWithFrame:frame pullsDown:NO] autorelease];
    [popUp setFont:[NSFont systemFontOfSize:12]];
    [popUp setTarget:target];
    [popUp setAction:action];
    return popUp;
}
