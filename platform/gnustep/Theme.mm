#include "Theme.h"

#include "ThemeShapes.h"

#import <GNUstepGUI/GSTheme.h>
#import <objc/runtime.h>

static const CGFloat kRadius = 5, kTextInset = 4, kTabHeight = 24, kTabPadding = 14;

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

/// A part of a scroller: its arrow, its knob or what the knob moves in.
@interface ScrollerPart : NSButtonCell
{
@public
    int arrow; ///< -1 for none: up, down, left, right
    BOOL isKnob;
}
@end

@implementation ScrollerPart

- (void)drawWithFrame:(NSRect)frame inView:(NSView*)view
{
    [[NSColor scrollBarColor] set];
    NSRectFill(frame);
    BOOL upright = NSHeight([view frame]) > NSWidth([view frame]);
    NSRect knob = NSInsetRect(frame, upright ? 3 : 1, upright ? 1 : 3);
    if (isKnob)
        drawRounded(knob, MIN(NSWidth(knob), NSHeight(knob)) / 2, [NSColor knobColor], nil);
    if (arrow < 0)
        return;
    constexpr NSPoint arrows[][3] = {
        {{0.3, 0.6}, {0.5, 0.4}, {0.7, 0.6}}, // up; the view is flipped
        {{0.3, 0.4}, {0.5, 0.6}, {0.7, 0.4}},
        {{0.6, 0.3}, {0.4, 0.5}, {0.6, 0.7}},
        {{0.4, 0.3}, {0.6, 0.5}, {0.4, 0.7}},
    };
    [[self isHighlighted] ? [NSColor controlTextColor] : [NSColor controlDarkShadowColor] set];
    strokeThrough(frame, arrows[arrow], 3, 1.5);
}

@end

/// As long as the theme, as the toolkit wants it: to the end.
static ScrollerPart* scrollerPart(int arrow, BOOL isKnob)
{
    ScrollerPart* part = [[ScrollerPart alloc] init];
    part->arrow = arrow;
    part->isKnob = isKnob;
    return part;
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
        fill = isPressed(state) ? [NSColor controlDarkShadowColor] : accentColor();
    drawRounded(frame, kRadius, fill, isDefault(cell) ? nil : outlineColor());
}

- (GSThemeMargins)buttonMarginsForCell:(NSCell*)cell style:(int)style state:(GSThemeControlState)state
{
    return {6, 6, 3, 3};
}

/// The default button is known by its colour; the toolkit would put the picture of a key on it.
- (void)setKeyEquivalent:(NSString*)key forButtonCell:(NSButtonCell*)cell
{
}

- (void)didSetDefaultButtonCell:(NSButtonCell*)cell
{
}

- (void)drawPopUpButtonCellInteriorWithFrame:(NSRect)frame withCell:(NSCell*)cell inView:(NSView*)view
{
    [super drawPopUpButtonCellInteriorWithFrame:NSInsetRect(frame, kTextInset, 0) withCell:cell inView:view];
}

- (void)drawFocusFrame:(NSRect)frame view:(NSView*)view
{
    NSRect ring = [view isKindOfClass:[NSControl class]] ? [view bounds] : frame;
    [NSBezierPath setDefaultLineWidth:2];
    drawRounded(NSInsetRect(ring, 0.5, 0.5), kRadius, nil, [NSColor keyboardFocusIndicatorColor]);
    [NSBezierPath setDefaultLineWidth:1];
}

- (void)drawBorderType:(NSBorderType)type frame:(NSRect)frame view:(NSView*)view
{
    BOOL typing = [view isKindOfClass:[NSTextField class]] && [(NSTextField*)view currentEditor] != nil;
    if (type != NSNoBorder)
        drawRounded(frame, kRadius - 1, nil, typing ? [NSColor keyboardFocusIndicatorColor] : outlineColor());
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
    constexpr NSPoint above[] = {{0.3, 0.38}, {0.5, 0.18}, {0.7, 0.38}};
    constexpr NSPoint below[] = {{0.3, 0.62}, {0.5, 0.82}, {0.7, 0.62}};
    drawRounded(frame, kRadius - 1, [NSColor controlColor], outlineColor());
    [up ? accentColor() : [NSColor controlTextColor] set];
    strokeThrough(frame, [view isFlipped] ? above : below, 3, 1.5);
    [down ? accentColor() : [NSColor controlTextColor] set];
    strokeThrough(frame, [view isFlipped] ? below : above, 3, 1.5);
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
    drawRounded(frame, kRadius, selected ? accentColor() : [NSColor controlColor], nil);
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
    drawRounded(whole, kRadius, nil, outlineColor());
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

- (NSColor*)menuBackgroundColor
{
    return [NSColor controlColor];
}

- (NSColor*)menuItemBackgroundColor
{
    return [NSColor controlColor];
}

- (NSColor*)menuBorderColor
{
    return outlineColor();
}

- (NSColor*)menuBorderColorForEdge:(NSRectEdge)edge isHorizontal:(BOOL)horizontal
{
    return outlineColor();
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
        drawRounded(NSInsetRect(frame, 3, 0), kRadius - 1, accentColor(), nil);
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
        drawRounded([view bounds], 2, nil, outlineColor());
}

- (void)drawTitleForMenuItemCell:(NSMenuItemCell*)cell
                       withFrame:(NSRect)frame
                          inView:(NSView*)view
                           state:(GSThemeControlState)state
                    isHorizontal:(BOOL)horizontal
{
    CGFloat inset = [cell isKindOfClass:[NSPopUpButtonCell class]] ? 0 : kTextInset;
    [super drawTitleForMenuItemCell:cell
                          withFrame:NSOffsetRect(frame, inset, 0)
                             inView:view
                              state:state
                       isHorizontal:horizontal];
}

- (void)drawMenuRect:(NSRect)rect inView:(NSView*)view isHorizontal:(BOOL)horizontal itemCells:(NSArray*)cells
{
    [super drawMenuRect:rect inView:view isHorizontal:horizontal itemCells:cells];
    drawRounded([view bounds], 0, nil, outlineColor());
}

- (float)defaultScrollerWidth
{
    return 14;
}

- (NSButtonCell*)cellForScrollerArrow:(NSScrollerArrow)arrow horizontal:(BOOL)horizontal
{
    return scrollerPart((horizontal ? 2 : 0) + (arrow == NSScrollerDecrementArrow ? 0 : 1), NO);
}

- (NSCell*)cellForScrollerKnob:(BOOL)horizontal
{
    return scrollerPart(-1, YES);
}

- (NSCell*)cellForScrollerKnobSlot:(BOOL)horizontal
{
    return scrollerPart(-1, NO);
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
    drawRounded(bounds, 4, accentColor(), nil);
}

@end

void useTheme(BOOL dark)
{
    [GSTheme setTheme:[[[FlatTheme alloc] initWithBundle:[NSBundle mainBundle]] autorelease]];
    setSystemColors(dark);
    setSystemImages(); // before the classes below, which keep the images that they find at first
    for (Class cell in @[ [NSButtonCell class], [NSMenuItemCell class] ])
        class_replaceMethod(cell, @selector(textColor), reinterpret_cast<IMP>(textColorOf), "@@:");
    class_replaceMethod([NSPopUpButton class], @selector(mouseDown:), reinterpret_cast<IMP>(openList),
                        "v@:@");
}
