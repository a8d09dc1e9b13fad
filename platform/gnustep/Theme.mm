#include "Theme.h"

#include "PopUpList.h"
#include "ThemeDrawing.h"

#import <GNUstepGUI/GSTheme.h>
#import <objc/runtime.h>

static const CGFloat kRadius = 5, kTabHeight = 24, kTabPadding = 14;

static BOOL isPressed(GSThemeControlState state)
{
    return state == GSThemeHighlightedState || state == GSThemeHighlightedFirstResponderState;
}

/// The button that Return presses.
static BOOL isDefault(NSCell* cell)
{
    return [cell isKindOfClass:[NSButtonCell class]] && ![cell isKindOfClass:[NSMenuItemCell class]] &&
           [cell isEnabled] && [[(NSButtonCell*)cell keyEquivalent] isEqual:@"\r"];
}

/// In place of the cells' own method, which knows no text on the accent colour.
static NSColor* textColorOf(NSButtonCell* cell, SEL selector)
{
    if (![cell isEnabled])
        return [NSColor disabledControlTextColor];
    BOOL inList =
        [cell isKindOfClass:[NSMenuItemCell class]] && ![cell isKindOfClass:[NSPopUpButtonCell class]];
    return isDefault(cell) || (inList && [cell isHighlighted]) ? [NSColor selectedControlTextColor]
                                                               : [NSColor controlTextColor];
}

/// In place of the pop-up's own method, which follows the button until it goes up.
static void openList(NSPopUpButton* popUp, SEL selector, NSEvent* event)
{
    if (![popUp isEnabled])
        return;
    [[popUp window] makeFirstResponder:popUp];
    [[popUp cell] attachPopUpWithFrame:[popUp bounds] inView:popUp];
}

enum class Part { Arrow, Knob, Slot };

/// A part of a scroller.
@interface ScrollerPart : NSButtonCell
{
@public
    Part part;
    Arrow arrow;
}
@end

@implementation ScrollerPart

- (void)drawWithFrame:(NSRect)frame inView:(NSView*)view
{
    [[NSColor scrollBarColor] set];
    NSRectFill(frame);
    if (part == Part::Knob)
        drawRounded(NSInsetRect(frame, 3, 3), 4, [NSColor knobColor], nil);
    [[self isHighlighted] ? [NSColor controlTextColor] : [NSColor controlDarkShadowColor] set];
    if (part == Part::Arrow)
        drawArrow(frame, arrow, [view isFlipped]);
}

@end

/// As long as the theme, as the toolkit wants it: to the end.
static ScrollerPart* scrollerPart(Part part, Arrow arrow = Arrow::Up)
{
    ScrollerPart* cell = [[ScrollerPart alloc] init];
    cell->part = part;
    cell->arrow = arrow;
    return cell;
}

@interface FlatTheme : GSTheme
@end

@implementation FlatTheme

#pragma mark Buttons and fields

- (void)drawButton:(NSRect)frame
                in:(NSCell*)cell
              view:(NSView*)view
             style:(int)style
             state:(GSThemeControlState)state
{
    NSColor* fill = isPressed(state) ? [NSColor controlLightHighlightColor] : [NSColor controlColor];
    if (![cell isEnabled])
        fill = [NSColor windowBackgroundColor];
    if (isDefault(cell))
        fill = isPressed(state) ? [NSColor controlDarkShadowColor] : [NSColor selectedControlColor];
    drawRounded(frame, kRadius, fill, isDefault(cell) ? nil : [NSColor controlShadowColor]);
}

- (GSThemeMargins)buttonMarginsForCell:(NSCell*)cell style:(int)style state:(GSThemeControlState)state
{
    return {6, 6, 3, 3};
}

/// The default button is known by its colour; the toolkit would put the picture of a key on it.
- (void)setKeyEquivalent:(NSString*)key forButtonCell:(NSButtonCell*)cell
{
}

- (void)drawBorderType:(NSBorderType)type frame:(NSRect)frame view:(NSView*)view
{
    BOOL typing = [view isKindOfClass:[NSTextField class]] && [(NSTextField*)view currentEditor] != nil;
    if (type != NSNoBorder)
        drawRounded(frame, kRadius - 1, nil,
                    typing ? [NSColor keyboardFocusIndicatorColor] : [NSColor controlShadowColor]);
}

- (NSSize)sizeForBorderType:(NSBorderType)type
{
    if (type == NSNoBorder)
        return NSZeroSize;
    return type == NSLineBorder ? NSMakeSize(1, 1) : NSMakeSize(2, 2);
}

- (void)drawBoxInClipRect:(NSRect)clip
                  boxType:(NSBoxType)type
               borderType:(NSBorderType)border
                   inView:(NSBox*)box
{
    if (type == NSBoxSeparator) {
        [[NSColor gridColor] set];
        NSRectFill([box bounds]);
        return;
    }
    if (border != NSNoBorder)
        drawRounded([box borderRect], kRadius + 1, nil, [NSColor gridColor]);
    if ([box titlePosition] == NSNoTitle)
        return;
    [[NSColor windowBackgroundColor] set];
    NSRectFill([box titleRect]);
    [[box titleCell] drawWithFrame:[box titleRect] inView:box];
}

- (void)drawStepperCell:(NSCell*)cell
              withFrame:(NSRect)frame
                 inView:(NSView*)view
            highlightUp:(BOOL)up
          highlightDown:(BOOL)down
{
    drawRounded(frame, kRadius - 1, [NSColor controlColor], [NSColor controlShadowColor]);
    CGFloat above = [view isFlipped] ? -4.5 : 4.5;
    [up ? [NSColor selectedControlColor] : [NSColor controlTextColor] set];
    drawArrow(NSOffsetRect(frame, 0, above), Arrow::Up, [view isFlipped]);
    [down ? [NSColor selectedControlColor] : [NSColor controlTextColor] set];
    drawArrow(NSOffsetRect(frame, 0, -above), Arrow::Down, [view isFlipped]);
}

- (void)drawFocusFrame:(NSRect)frame view:(NSView*)view
{
    NSRect ring = [view isKindOfClass:[NSControl class]] ? [view bounds] : frame;
    drawRounded(ring, kRadius, nil, [NSColor keyboardFocusIndicatorColor], 2);
}

#pragma mark Tabs

- (NSRect)tabViewContentRectForBounds:(NSRect)bounds tabViewType:(NSTabViewType)type tabView:(NSTabView*)view
{
    NSRect content = NSInsetRect(bounds, 1, 1);
    content.size.height -= kTabHeight;
    content.origin.y += [view isFlipped] ? kTabHeight : 0;
    return content;
}

- (void)drawTab:(NSTabViewItem*)item inRect:(NSRect)frame selected:(BOOL)selected
{
    // The toolkit's drawing, at the left, is painted over: it also makes the frame the one that a click
    // finds.
    [item drawLabel:NO inRect:frame];
    drawRounded(frame, kRadius, selected ? [NSColor selectedControlColor] : [NSColor controlColor], nil);
    NSColor* color = selected ? [NSColor selectedControlTextColor] : [NSColor controlTextColor];
    NSDictionary* attributes =
        [NSDictionary dictionaryWithObjectsAndKeys:[[item tabView] font], NSFontAttributeName, color,
                                                   NSForegroundColorAttributeName, nil];
    NSSize size = [[item label] sizeWithAttributes:attributes];
    [[item label] drawAtPoint:NSMakePoint(NSMidX(frame) - size.width / 2, NSMidY(frame) - size.height / 2)
               withAttributes:attributes];
    NSView* view = [item tabView];
    if (selected && [[view window] firstResponder] == view)
        drawRounded(NSInsetRect(frame, 2, 2), kRadius - 1, nil, color);
}

- (void)drawTabViewRect:(NSRect)rect
                 inView:(NSView*)view
              withItems:(NSArray*)items
           selectedItem:(NSTabViewItem*)selected
{
    NSRect bounds = [view bounds];
    CGFloat width = 0;
    for (NSTabViewItem* item in items)
        width += [item sizeOfLabel:NO].width + 2 * kTabPadding;
    NSRect row = NSMakeRect(NSMidX(bounds) - width / 2, NSMinY(bounds), width, kTabHeight);
    if (![view isFlipped])
        row.origin.y = NSMaxY(bounds) - kTabHeight;
    NSRect frame = bounds;
    frame.size.height -= kTabHeight / 2;
    frame.origin.y += [view isFlipped] ? kTabHeight / 2 : 0;
    drawRounded(frame, kRadius + 1, nil, [NSColor gridColor]);
    NSRect whole = NSInsetRect(row, -1, -1);
    for (NSTabViewItem* item in items) {
        row.size.width = [item sizeOfLabel:NO].width + 2 * kTabPadding;
        [self drawTab:item inRect:row selected:item == selected];
        row.origin.x += NSWidth(row);
    }
    drawRounded(whole, kRadius, nil, [NSColor controlShadowColor]);
}

#pragma mark Lists

- (void)displayPopUpMenu:(NSMenuView*)list
           withCellFrame:(NSRect)frame
       controlViewWindow:(NSWindow*)window
           preferredEdge:(NSRectEdge)edge
            selectedItem:(int)selected
{
    [super displayPopUpMenu:list
              withCellFrame:frame
          controlViewWindow:window
              preferredEdge:edge
               selectedItem:selected];
    NSInteger chosen = runList(list, selected);
    if (chosen >= 0)
        [[list menu] performActionForItemAtIndex:chosen];
}

- (BOOL)doesProcessEventsForPopUpMenu
{
    return YES;
}

- (NSColor*)menuSeparatorColor
{
    return [NSColor gridColor];
}

- (CGFloat)menuItemHeight
{
    return 22;
}

- (void)drawBorderAndBackgroundForMenuItemCell:(NSMenuItemCell*)cell
                                     withFrame:(NSRect)frame
                                        inView:(NSView*)view
                                         state:(GSThemeControlState)state
                                  isHorizontal:(BOOL)horizontal
{
    [[NSColor controlColor] set];
    NSRectFill(frame);
    if (isPressed(state) || state == GSThemeSelectedState)
        drawRounded(NSInsetRect(frame, 3, 0), kRadius - 1, [NSColor selectedControlColor], nil);
}

- (void)highlightTableViewSelectionInClipRect:(NSRect)clip inView:(NSView*)view selectingColumns:(BOOL)columns
{
    NSTableView* table = (NSTableView*)view;
    [[NSColor selectedTextBackgroundColor] set];
    NSIndexSet* rows = [table selectedRowIndexes];
    for (NSUInteger row = [rows firstIndex]; row != NSNotFound; row = [rows indexGreaterThanIndex:row])
        NSRectFill(NSIntersectionRect([table rectOfRow:static_cast<NSInteger>(row)], clip));
}

- (void)drawScrollViewRect:(NSRect)rect inView:(NSView*)view
{
    if ([(NSScrollView*)view borderType] != NSNoBorder)
        drawRounded([view bounds], 2, nil, [NSColor controlShadowColor]);
}

- (void)drawMenuRect:(NSRect)rect inView:(NSView*)view isHorizontal:(BOOL)horizontal itemCells:(NSArray*)cells
{
    [super drawMenuRect:rect inView:view isHorizontal:horizontal itemCells:cells];
    drawRounded([view bounds], 0, nil, [NSColor controlShadowColor]);
}

- (float)defaultScrollerWidth
{
    return 14;
}

- (NSButtonCell*)cellForScrollerArrow:(NSScrollerArrow)arrow horizontal:(BOOL)horizontal
{
    if (arrow == NSScrollerDecrementArrow)
        return scrollerPart(Part::Arrow, horizontal ? Arrow::Left : Arrow::Up);
    return scrollerPart(Part::Arrow, horizontal ? Arrow::Right : Arrow::Down);
}

- (NSCell*)cellForScrollerKnob:(BOOL)horizontal
{
    return scrollerPart(Part::Knob);
}

- (NSCell*)cellForScrollerKnobSlot:(BOOL)horizontal
{
    return scrollerPart(Part::Slot);
}

- (NSColor*)tableHeaderTextColorForState:(GSThemeControlState)state
{
    return [NSColor headerTextColor];
}

- (void)drawTableHeaderCell:(NSTableHeaderCell*)cell
                  withFrame:(NSRect)frame
                     inView:(NSView*)view
                      state:(GSThemeControlState)state
{
    [[NSColor headerColor] set];
    NSRectFill(frame);
    [[NSColor gridColor] set];
    NSRectFill(NSMakeRect(NSMaxX(frame) - 1, NSMinY(frame) + 4, 1, NSHeight(frame) - 8));
}

- (void)drawTableCornerView:(NSView*)corner withClip:(NSRect)clip
{
    [[NSColor headerColor] set];
    NSRectFill([corner bounds]);
}

#pragma mark Progress

- (NSRect)drawProgressIndicatorBezel:(NSRect)bounds withClip:(NSRect)clip
{
    NSRect bar = NSInsetRect(bounds, 0, MAX(0, NSHeight(bounds) / 2 - 4));
    drawRounded(bar, 4, [NSColor controlLightHighlightColor], nil);
    return bar;
}

- (void)drawProgressIndicatorBarDeterminate:(NSRect)bounds
{
    drawRounded(bounds, 4, [NSColor selectedControlColor], nil);
}

@end

void useTheme(BOOL dark)
{
    [GSTheme setTheme:[[[FlatTheme alloc] initWithBundle:[NSBundle mainBundle]] autorelease]];
    // It would go back to the theme that the user's settings name whenever one of them changes.
    [[NSNotificationCenter defaultCenter] removeObserver:[GSTheme class]
                                                    name:NSUserDefaultsDidChangeNotification
                                                  object:nil];
    setSystemColors(dark);
    setSystemImages(); // before the classes below, which keep the images that they find at first
    for (Class cell in @[ [NSButtonCell class], [NSMenuItemCell class] ])
        class_replaceMethod(cell, @selector(textColor), reinterpret_cast<IMP>(textColorOf), "@@:");
    class_replaceMethod([NSPopUpButton class], @selector(mouseDown:), reinterpret_cast<IMP>(openList),
                        "v@:@");
}
