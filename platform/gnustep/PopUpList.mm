#include "PopUpList.h"

#include <cmath>

// A pop-up's list as desktop programs have it: it opens on a click and stays, and has every key and click
// until it is closed. The toolkit's own list closes when the button goes up, and its keys reach the window's
// buttons too.

static const NSTimeInterval kPause = 1; ///< seconds after which a typed letter begins anew
static const CGFloat kLeastDrag = 4;    ///< a pointer that moved less has only clicked

@interface OpenList : NSObject
{
@public
    NSMenuView* view;
    NSInteger index; ///< of the highlighted item
    NSString* typed;
    NSTimeInterval typedAt;
    BOOL chosen, closed;
}
@end

@implementation OpenList

- (void)dealloc
{
    [typed release];
    [super dealloc];
}

- (BOOL)isItem:(NSInteger)item
{
    if (item < 0 || item >= [[view menu] numberOfItems])
        return NO;
    id<NSMenuItem> entry = [[view menu] itemAtIndex:item];
    return ![entry isSeparatorItem] && [entry isEnabled];
}

/// Also moves a list that is longer than the screen.
- (void)highlight:(NSInteger)item
{
    if (![self isItem:item])
        return;
    index = item;
    [view setHighlightedItemIndex:static_cast<int>(item)];
    NSWindow* window = [view window];
    NSRect screen = [[window screen] visibleFrame];
    NSRect row = [view convertRect:[view rectOfItemAtIndex:static_cast<int>(item)] toView:nil];
    CGFloat bottom = NSMinY([window frame]) + NSMinY(row), top = bottom + NSHeight(row);
    CGFloat shift = bottom < NSMinY(screen) ? NSMinY(screen) - bottom : MIN(0, NSMaxY(screen) - top);
    NSPoint origin = [window frame].origin;
    if (shift != 0)
        [window setFrameOrigin:NSMakePoint(origin.x, origin.y + shift)];
}

- (void)moveBy:(NSInteger)step
{
    NSInteger item = index + step;
    while (item >= 0 && item < [[view menu] numberOfItems] && ![self isItem:item])
        item += step > 0 ? 1 : -1;
    [self highlight:item];
}

/// The next item that begins with what was typed.
- (void)type:(NSString*)letters
{
    NSTimeInterval now = [NSDate timeIntervalSinceReferenceDate];
    BOOL goesOn = typed != nil && now - typedAt < kPause;
    NSString* wanted = goesOn ? [typed stringByAppendingString:letters] : letters;
    [typed release];
    typed = [[wanted lowercaseString] copy];
    typedAt = now;
    NSInteger count = [[view menu] numberOfItems];
    for (NSInteger step = goesOn ? 0 : 1; step <= count; ++step) {
        NSInteger item = (MAX(index, 0) + step) % count;
        NSString* title = [[[view menu] itemAtIndex:item] title];
        if ([[title lowercaseString] hasPrefix:typed] && [self isItem:item]) {
            [self highlight:item];
            return;
        }
    }
}

- (void)takeKey:(NSEvent*)event
{
    NSString* letters = [event characters];
    if ([letters length] == 0)
        return;
    NSInteger last = [[view menu] numberOfItems] - 1;
    switch ([letters characterAtIndex:0]) {
    case NSUpArrowFunctionKey:
        return [self moveBy:-1];
    case NSDownArrowFunctionKey:
        return [self moveBy:1];
    case NSHomeFunctionKey:
    case NSPageUpFunctionKey:
        return [self highlight:0];
    case NSEndFunctionKey:
    case NSPageDownFunctionKey:
        return [self highlight:last];
    case '\r':
    case '\n':
    case NSEnterCharacter:
    case ' ':
        chosen = closed = YES;
        return;
    case '\e':
    case '\t':
        closed = YES;
        return;
    default:
        [self type:letters];
    }
}

/// The item under the pointer, -1 for none.
- (NSInteger)itemAtPointer
{
    NSPoint inWindow = [[view window] convertScreenToBase:[NSEvent mouseLocation]];
    NSPoint inView = [view convertPoint:inWindow fromView:nil];
    return NSPointInRect(inView, [view bounds]) ? [view indexOfItemAtPoint:inView] : -1;
}

- (void)takeEvent:(NSEvent*)event
{
    NSInteger item = [self itemAtPointer];
    switch ([event type]) {
    case NSKeyDown:
        return [self takeKey:event];
    case NSMouseMoved:
    case NSLeftMouseDragged:
        return [self highlight:item];
    case NSScrollWheel:
        return [self moveBy:[event deltaY] > 0 ? -1 : 1];
    case NSLeftMouseDown:
    case NSRightMouseDown:
        closed = !NSPointInRect([NSEvent mouseLocation], [[view window] frame]);
        return;
    case NSLeftMouseUp:
        closed = chosen = [self isItem:item];
        index = item;
        return;
    case NSKeyUp:
    case NSFlagsChanged:
        return;
    default:
        [NSApp sendEvent:event];
        closed = ![NSApp isActive];
    }
}

@end

NSInteger runList(NSMenuView* view, NSInteger selected)
{
    OpenList* list = [[[OpenList alloc] init] autorelease];
    list->view = view;
    list->index = -1;
    [list highlight:selected];
    // The click that opens the list ends over it, and chooses only if it was drawn to an item.
    BOOL opening = [[NSApp currentEvent] type] == NSLeftMouseDown;
    NSPoint start = [NSEvent mouseLocation];
    [[view window] setAcceptsMouseMovedEvents:YES];
    while (!list->closed) {
        NSEvent* event = [NSApp nextEventMatchingMask:NSAnyEventMask
                                            untilDate:[NSDate distantFuture]
                                               inMode:NSEventTrackingRunLoopMode
                                              dequeue:YES];
        NSPoint now = [NSEvent mouseLocation];
        BOOL moved = std::hypot(now.x - start.x, now.y - start.y) >= kLeastDrag;
        BOOL ends = opening && [event type] == NSLeftMouseUp;
        opening = opening && !ends;
        if (!ends || moved)
            [list takeEvent:event];
    }
    [[view window] orderOut:nil];
    return list->chosen ? list->index : -1;
}
