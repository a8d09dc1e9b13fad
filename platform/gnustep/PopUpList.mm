#include "PopUpList.h"

#include <cmath>

// A pop-up's list as desktop programs have it: it opens on a click and stays, and has every key and click
// until it is closed. The toolkit's own list closes when the button goes up, and its keys reach the window's
// buttons too.

namespace {

const NSTimeInterval kPause = 1; ///< seconds after which a typed letter begins anew
const CGFloat kLeastDrag = 4;    ///< a pointer that moved less has only clicked

struct OpenList {
    NSMenuView* view;
    NSInteger index = -1; ///< of the highlighted item
    NSString* typed = @"";
    NSTimeInterval typedAt = 0;
    bool chosen = false, closed = false;

    NSInteger count() const { return [[view menu] numberOfItems]; }

    bool isItem(NSInteger item) const
    {
        if (item < 0 || item >= count())
            return false;
        id<NSMenuItem> entry = [[view menu] itemAtIndex:item];
        return ![entry isSeparatorItem] && [entry isEnabled];
    }

    /// Also moves a list that is longer than the screen.
    void highlight(NSInteger item)
    {
        if (!isItem(item))
            return;
        index = item;
        [view setHighlightedItemIndex:static_cast<int>(item)];
        NSWindow* window = [view window];
        NSRect screen = [[window screen] visibleFrame];
        NSRect row = [view convertRect:[view rectOfItemAtIndex:static_cast<int>(item)] toView:nil];
        NSPoint origin = [window frame].origin;
        CGFloat bottom = origin.y + NSMinY(row), top = bottom + NSHeight(row);
        CGFloat shift = bottom < NSMinY(screen) ? NSMinY(screen) - bottom : MIN(0, NSMaxY(screen) - top);
        if (shift != 0)
            [window setFrameOrigin:NSMakePoint(origin.x, origin.y + shift)];
    }

    void moveBy(NSInteger step)
    {
        NSInteger item = index + step;
        while (item >= 0 && item < count() && !isItem(item))
            item += step;
        highlight(item);
    }

    /// Goes to the next item that begins with what was typed.
    void type(NSString* letters)
    {
        NSTimeInterval now = [NSDate timeIntervalSinceReferenceDate];
        bool goesOn = now - typedAt < kPause;
        typed = [(goesOn ? typed : @"") stringByAppendingString:[letters lowercaseString]];
        typedAt = now;
        for (NSInteger step = goesOn ? 0 : 1; step <= count(); ++step) {
            NSInteger item = (MAX(index, 0) + step) % count();
            if (isItem(item) && [[[[[view menu] itemAtIndex:item] title] lowercaseString] hasPrefix:typed])
                return highlight(item);
        }
    }

    void takeKey(NSString* letters)
    {
        if ([letters length] == 0)
            return;
        switch ([letters characterAtIndex:0]) {
        case NSUpArrowFunctionKey:
            return moveBy(-1);
        case NSDownArrowFunctionKey:
            return moveBy(1);
        case NSHomeFunctionKey:
        case NSPageUpFunctionKey:
            index = -1;
            return moveBy(1);
        case NSEndFunctionKey:
        case NSPageDownFunctionKey:
            index = count();
            return moveBy(-1);
        case '\r':
        case '\n':
        case NSEnterCharacter:
        case ' ':
            chosen = closed = true;
            return;
        case '\e':
        case '\t':
            closed = true;
            return;
        default:
            type(letters);
        }
    }

    /// The item under the pointer, -1 for none.
    NSInteger itemAtPointer() const
    {
        NSPoint inWindow = [[view window] convertScreenToBase:[NSEvent mouseLocation]];
        NSPoint inView = [view convertPoint:inWindow fromView:nil];
        return NSPointInRect(inView, [view bounds]) ? [view indexOfItemAtPoint:inView] : -1;
    }

    void takeEvent(NSEvent* event)
    {
        switch ([event type]) {
        case NSKeyDown:
            return takeKey([event characters]);
        case NSMouseMoved:
        case NSLeftMouseDragged:
            return highlight(itemAtPointer());
        case NSScrollWheel:
            return moveBy([event deltaY] > 0 ? -1 : 1);
        case NSLeftMouseDown:
        case NSRightMouseDown:
            closed = !NSPointInRect([NSEvent mouseLocation], [[view window] frame]);
            return;
        case NSLeftMouseUp:
            index = itemAtPointer();
            closed = chosen = isItem(index);
            return;
        case NSKeyUp:
        case NSFlagsChanged:
            return;
        default:
            [NSApp sendEvent:event];
            closed = ![NSApp isActive];
        }
    }
};

} // namespace

NSInteger runList(NSMenuView* view, NSInteger selected)
{
    OpenList list{view};
    list.highlight(selected);
    // The click that opens the list ends over it, and chooses only if it was drawn to an item.
    BOOL opening = [[NSApp currentEvent] type] == NSLeftMouseDown;
    NSPoint start = [NSEvent mouseLocation];
    [[view window] setAcceptsMouseMovedEvents:YES];
    while (!list.closed) {
        NSEvent* event = [NSApp nextEventMatchingMask:NSAnyEventMask
                                            untilDate:[NSDate distantFuture]
                                               inMode:NSEventTrackingRunLoopMode
                                              dequeue:YES];
        NSPoint now = [NSEvent mouseLocation];
        BOOL ends = opening && [event type] == NSLeftMouseUp;
        opening = opening && !ends;
        if (!ends || std::hypot(now.x - start.x, now.y - start.y) >= kLeastDrag)
            list.takeEvent(event);
    }
    [[view window] orderOut:nil];
    return list.chosen ? list.index : -1;
}
