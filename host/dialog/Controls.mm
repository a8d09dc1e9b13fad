#include "Controls.h"

/// A window whose keyboard order is where its controls are: from the top down, then from left to right. The
/// toolkit sets the order once, when the window is first shown; the panel swaps views and tabs after that.
@interface KeyboardWindow : NSWindow
@end

@implementation KeyboardWindow

- (void)selectNextKeyView:(id)sender
{
    [self recalculateKeyViewLoop];
    [super selectNextKeyView:sender];
}

- (void)selectPreviousKeyView:(id)sender
{
    [self recalculateKeyViewLoop];
    [super selectPreviousKeyView:sender];
}

- (void)selectKeyViewFollowingView:(NSView*)view
{
    [self recalculateKeyViewLoop];
    [super selectKeyViewFollowingView:view];
}

- (void)selectKeyViewPrecedingView:(NSView*)view
{
    [self recalculateKeyViewLoop];
    [super selectKeyViewPrecedingView:view];
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
