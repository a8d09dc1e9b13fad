// The keyboard's focus where the toolkit does not bring or show it.

#import <AppKit/AppKit.h>
#import <objc/runtime.h>

static BOOL (*changeFocus)(NSWindow*, SEL, NSResponder*);

/// Draws the whole window: a field would draw no more than its text when it gains or loses the focus.
static BOOL makeFirstResponder(NSWindow* window, SEL selector, NSResponder* responder)
{
    BOOL changed = changeFocus(window, selector, responder);
    [[[window contentView] superview] setNeedsDisplay:YES];
    return changed;
}

// The toolkit's tab views take no keys: their other pages could only be reached with the mouse.
@interface NSTabView (Keys)
@end

@implementation NSTabView (Keys)

+ (void)load
{
    // No message: the class would read the user's settings before the program has said its own.
    IMP earlier = class_replaceMethod(objc_getClass("NSWindow"), @selector(makeFirstResponder:),
                                      reinterpret_cast<IMP>(makeFirstResponder), "C@:@");
    changeFocus = reinterpret_cast<BOOL (*)(NSWindow*, SEL, NSResponder*)>(earlier);
}

- (BOOL)acceptsFirstResponder
{
    return YES;
}

- (void)keyDown:(NSEvent*)event
{
    unichar key = [[event characters] length] > 0 ? [[event characters] characterAtIndex:0] : 0;
    if (key != NSLeftArrowFunctionKey && key != NSRightArrowFunctionKey)
        return [super keyDown:event];
    NSInteger item = [self indexOfTabViewItem:[self selectedTabViewItem]];
    item += key == NSRightArrowFunctionKey ? 1 : -1;
    if (item < 0 || item >= [self numberOfTabViewItems])
        return;
    [self selectTabViewItemAtIndex:item];
    [[self window] makeFirstResponder:self]; // the page has taken it
}

@end
