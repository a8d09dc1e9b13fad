#include "Theme.h"

#include "PopUpList.h"

#import <GNUstepGUI/GSTheme.h>
#import <objc/runtime.h>
#include <vector>

static const CGFloat kRadius = 5, kTabHeight = 24, kTabPadding = 14;
static const NSRect kSwitch = {{0, 1}, {15, 15}}; ///< leaves some room to the text

#pragma mark Colours

/// Puts the palette into the toolkit's system colours, with the names that only themes know.
static void setSystemColors(BOOL dark)
{
    struct {
        unsigned light, dark;
        NSString* names;
    } const colors[] = {
        {0xF5F5F7, 0x2B2C30, @"windowBackground scrollBar"},
        {0xFFFFFF, 0x1E1F22, @"controlBackground textBackground rowBackground"},
        {0xFFFFFF, 0x414349, @"control controlHighlight highlight toolTip"},
        {0xE8E8ED, 0x36383D, @"controlLightHighlight header"},
        {0xE1E2E7, 0x3A3B41, @"grid menuSeparator"},
        {0xC3C4CB, 0x5A5C64, @"controlShadow windowFrame"},
        {0x8E9099, 0x7A7D87, @"controlDarkShadow shadow knob selectedKnob disabledControlText"},
        {0x1C1D21, 0xECEDF0, @"controlText text selectedText toolTipText windowFrameText"},
        {0x4A4C55, 0xC7C9D1, @"headerText tableHeaderText"},
        {0x2B6CD9, 0x2F69C8, @"selectedControl alternateSelectedControl selectedMenuItem"},
        {0x2B6CD9, 0x5C94F0, @"keyboardFocusIndicator"},
        {0xFFFFFF, 0xFFFFFF, @"selectedControlText alternateSelectedControlText selectedMenuItemText"},
        {0xB9D3F8, 0x2C4F86, @"selectedTextBackground highlightedTableRowBackground"},
    };
    NSColorList* system = [NSColorList colorListNamed:@"System"];
    for (const auto& row : colors) {
        unsigned rgb = dark ? row.dark : row.light;
        NSColor* color = [NSColor colorWithCalibratedRed:(rgb >> 16) / 255.0
                                                   green:(rgb >> 8 & 255) / 255.0
                                                    blue:(rgb & 255) / 255.0
                                                   alpha:1];
        for (NSString* name in [row.names componentsSeparatedByString:@" "])
            [system setColor:color forKey:[name stringByAppendingString:@"Color"]];
    }
}

/// Fills and outlines `frame` with rounded corners; either colour may be nil. The outline lies inside.
static void drawRounded(NSRect frame, CGFloat radius, NSColor* fill, NSColor* outline, CGFloat width = 1)
{
    CGFloat inset = outline != nil ? width / 2 : 0;
    NSBezierPath* path = [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(frame, inset, inset)
                                                         xRadius:radius
                                                         yRadius:radius];
    [path setLineWidth:width];
    [fill set];
    if (fill != nil)
        [path fill];
    [outline set];
    if (outline != nil)
        [path stroke];
}

/// A line through points that are given from the middle of `frame`, in the current colour.
static void drawLine(NSRect frame, const std::vector<NSPoint>& points, CGFloat width)
{
    NSBezierPath* path = [NSBezierPath bezierPath];
    [path moveToPoint:NSMakePoint(NSMidX(frame) + points[0].x, NSMidY(frame) + points[0].y)];
    for (size_t i = 1; i < points.size(); ++i)
        [path lineToPoint:NSMakePoint(NSMidX(frame) + points[i].x, NSMidY(frame) + points[i].y)];
    [path setLineWidth:width];
    [path setLineCapStyle:NSRoundLineCapStyle];
    [path setLineJoinStyle:NSRoundLineJoinStyle];
    [path stroke];
}

static void drawOutline(NSRect frame, CGFloat radius, BOOL focused)
{
    NSColor* color = focused ? [NSColor keyboardFocusIndicatorColor] : [NSColor controlShadowColor];
    drawRounded(frame, radius, nil, color, focused ? 2 : 1);
}

/// The two arrow heads of a pop-up or a stepper.
static void drawChooser(NSRect frame)
{
    [[NSColor headerTextColor] set];
    drawLine(frame, {{-3, 2}, {0, 5}, {3, 2}}, 1.5);
    drawLine(frame, {{-3, -2}, {0, -5}, {3, -2}}, 1.5);
}

/// What takes the place of the toolkit's images, drawn at whatever resolution is wanted.
@interface ThemeImages : NSObject
@end

@implementation ThemeImages

+ (void)drawSwitchOff:(NSImageRep*)image
{
    drawRounded(kSwitch, 3.5, [NSColor controlBackgroundColor], [NSColor controlDarkShadowColor]);
}

+ (void)drawSwitchOn:(NSImageRep*)image
{
    drawRounded(kSwitch, 3.5, [NSColor selectedControlColor], nil);
    [[NSColor selectedControlTextColor] set];
    drawLine(kSwitch, {{-4, 0}, {-1, -3}, {4, 3}}, 2);
}

+ (void)drawChooser:(NSImageRep*)image
{
    drawChooser({NSZeroPoint, [image size]});
}

/// A printer whose sheet carries the process colours.
+ (void)drawIcon:(NSImageRep*)image
{
    NSColor* body = [NSColor colorWithCalibratedRed:0.27 green:0.31 blue:0.40 alpha:1];
    NSColor* paper = [NSColor colorWithCalibratedWhite:0.97 alpha:1];
    drawRounded(NSMakeRect(11, 28, 26, 17), 2, paper, [NSColor grayColor]);
    drawRounded(NSMakeRect(3, 13, 42, 21), 5, body, nil);
    drawRounded(NSMakeRect(9, 3, 30, 20), 2, paper, [NSColor grayColor]);
    NSColor* inks[] = {[NSColor cyanColor], [NSColor magentaColor], [NSColor yellowColor], body};
    for (int i = 0; i < 4; ++i)
        drawRounded(NSMakeRect(13 + 6 * i, 7, 4, 12), 1, inks[i], nil);
}

@end

/// Before the classes that keep the images that they find at first.
static void setSystemImages()
{
    const struct {
        NSString* name;
        CGFloat size;
        SEL draw;
    } images[] = {
        {@"GSSwitch", 18, @selector(drawSwitchOff:)},
        {@"GSSwitchSelected", 18, @selector(drawSwitchOn:)},
        {@"common_Nibble", 14, @selector(drawChooser:)},
        {@"NSApplicationIcon", 48, @selector(drawIcon:)},
        // Nothing: the default button is known by its colour.
        {@"common_ret", 1, @selector(self)},
        {@"common_retH", 1, @selector(self)},
    };
    for (const auto& row : images) {
        NSImageRep* vector =
            [[[NSCustomImageRep alloc] initWithDrawSelector:row.draw
                                                   delegate:(id)[ThemeImages class]] autorelease];
        [vector setSize:NSMakeSize(row.size, row.size)];
        NSImage* image = [[NSImage alloc] initWithSize:[vector size]];
        [image addRepresentation:vector];
        [image setCacheMode:NSImageCacheNever];
        NSImage* earlier = [NSImage imageNamed:row.name];
        (void)[earlier setName:nil];
        (void)[image setName:row.name];
    }
    [NSApp setApplicationIconImage:[NSImage imageNamed:@"NSApplicationIcon"]];
}

#pragma mark Controls

/// The button that Return presses.
static BOOL isDefault(NSCell* cell)
{
    return [cell isKindOfClass:[NSButtonCell class]] && [cell isEnabled] &&
           [[(NSButtonCell*)cell keyEquivalent] isEqual:@"\r"];
}

/// In place of the cells' own method, which knows no text on the accent colour.
static NSColor* textColorOf(NSButtonCell* cell, SEL selector)
{
    if (![cell isEnabled])
        return [NSColor disabledControlTextColor];
    BOOL chosen = [cell isMemberOfClass:[NSMenuItemCell class]] && [cell isHighlighted];
    return isDefault(cell) || chosen ? [NSColor selectedControlTextColor] : [NSColor controlTextColor];
}

/// In place of the pop-up's own method, which follows the button until it goes up.
static void openList(NSPopUpButton* popUp, SEL selector, NSEvent* event)
{
    if (![popUp isEnabled])
        return;
    [[popUp window] makeFirstResponder:popUp];
    [[popUp cell] attachPopUpWithFrame:[popUp bounds] inView:popUp];
}

@interface FlatTheme : GSTheme
@end

@implementation FlatTheme

- (NSColor*)colorNamed:(NSString*)name state:(GSThemeControlState)state
{
    return [[NSColorList colorListNamed:@"System"] colorWithKey:name];
}

#pragma mark Buttons and fields

- (void)drawButton:(NSRect)frame
                in:(NSCell*)cell
              view:(NSView*)view
             style:(int)style
             state:(GSThemeControlState)state
{
    NSColor* fill = [cell isEnabled] ? [NSColor controlColor] : [NSColor windowBackgroundColor];
    if (isDefault(cell))
        fill = [NSColor selectedControlColor];
    if ([cell isHighlighted])
        fill = [NSColor controlShadowColor];
    drawRounded(frame, kRadius, fill, isDefault(cell) ? nil : [NSColor controlShadowColor]);
}

- (GSThemeMargins)buttonMarginsForCell:(NSCell*)cell style:(int)style state:(GSThemeControlState)state
{
    BOOL centred = ![cell isKindOfClass:[NSMenuItemCell class]];
    return centred ? GSThemeMargins{3, 3, 3, 3} : GSThemeMargins{6, 6, 3, 3};
}

- (void)drawBorderType:(NSBorderType)type frame:(NSRect)frame view:(NSView*)view
{
    if (type != NSNoBorder)
        drawOutline(frame, kRadius - 1,
                    [view isKindOfClass:[NSTextField class]] && [(NSTextField*)view currentEditor] != nil);
}

- (NSRect)drawGroove:(NSRect)frame withClip:(NSRect)clip
{
    drawRounded(frame, kRadius + 1, nil, [NSColor gridColor]);
    return NSInsetRect(frame, 2, 2);
}

- (NSRect)drawGrayBezel:(NSRect)frame withClip:(NSRect)clip
{
    NSScrollView* view = (NSScrollView*)[NSView focusView];
    drawOutline(frame, 2,
                [view isKindOfClass:[NSScrollView class]] &&
                    [[view window] firstResponder] == [view documentView]);
    return NSInsetRect(frame, 2, 2);
}

- (void)drawStepperCell:(NSCell*)cell
              withFrame:(NSRect)frame
                 inView:(NSView*)view
            highlightUp:(BOOL)up
          highlightDown:(BOOL)down
{
    drawRounded(frame, kRadius - 1, [NSColor controlColor], [NSColor controlShadowColor]);
    drawChooser(frame);
}

- (void)drawFocusFrame:(NSRect)frame view:(NSView*)view
{
    NSButton* button = [view isKindOfClass:[NSButton class]] ? (NSButton*)view : nil;
    if ([button isBordered])
        frame = [view bounds];
    else if (button != nil)
        frame = NSMakeRect(16, 0, [[button attributedTitle] size].width + 6, NSHeight(frame)); // the text
    if (isDefault([button cell]))
        drawRounded(NSInsetRect(frame, 3, 3), kRadius - 2, nil, [NSColor selectedControlTextColor]);
    else
        drawOutline(frame, kRadius, YES);
}

#pragma mark Tabs

- (NSRect)tabViewContentRectForBounds:(NSRect)bounds tabViewType:(NSTabViewType)type tabView:(NSTabView*)view
{
    return NSMakeRect(1, kTabHeight, NSWidth(bounds) - 2, NSHeight(bounds) - kTabHeight - 1);
}

/// In the middle of the frame's upper edge.
- (void)drawTabViewRect:(NSRect)rect
                 inView:(NSTabView*)view
              withItems:(NSArray*)items
           selectedItem:(NSTabViewItem*)selected
{
    NSRect frame = [view bounds];
    frame.origin.y = kTabHeight / 2;
    frame.size.height -= kTabHeight / 2;
    drawRounded(frame, kRadius + 1, nil, [NSColor gridColor]);
    CGFloat width = 0;
    for (NSTabViewItem* item in items)
        width += [item sizeOfLabel:NO].width + 2 * kTabPadding;
    NSRect row = NSMakeRect(NSMidX(frame) - width / 2, 0, width, kTabHeight);
    drawRounded(NSInsetRect(row, -1, 0), kRadius, [NSColor controlColor], [NSColor controlShadowColor]);
    for (NSTabViewItem* item in items) {
        row.size.width = [item sizeOfLabel:NO].width + 2 * kTabPadding;
        // Makes the row the one that a click finds; the text, at its left, is painted over.
        [item drawLabel:NO inRect:row];
        NSColor* fill = item == selected ? [NSColor selectedControlColor] : [NSColor controlColor];
        NSColor* color = item == selected ? [NSColor selectedControlTextColor] : [NSColor controlTextColor];
        drawRounded(NSInsetRect(row, 0, 1), kRadius - 1, fill, nil);
        NSDictionary* look = @{NSFontAttributeName : [view font], NSForegroundColorAttributeName : color};
        CGFloat y = (kTabHeight - [[item label] sizeWithAttributes:look].height) / 2;
        [[item label] drawAtPoint:NSMakePoint(NSMinX(row) + kTabPadding, y) withAttributes:look];
        if (item == selected && [[view window] firstResponder] == view)
            drawRounded(NSInsetRect(row, 2, 3), kRadius - 2, nil, color);
        row.origin.x += NSWidth(row);
    }
}

#pragma mark Lists

- (void)displayPopUpMenu:(NSMenuView*)list
           withCellFrame:(NSRect)frame
       controlViewWindow:(NSWindow*)window
           preferredEdge:(NSRectEdge)edge
            selectedItem:(int)selected
{
    // The chosen item's picture is the button's arrows, which are no part of the list.
    NSMenuItem* shown = selected < 0 ? nil : [[[[list menu] itemAtIndex:selected] retain] autorelease];
    NSImage* arrows = [[[shown image] retain] autorelease];
    [shown setImage:nil];
    [super displayPopUpMenu:list
              withCellFrame:frame
          controlViewWindow:window
              preferredEdge:edge
               selectedItem:selected];
    NSInteger chosen = runList(list, selected);
    [list setHighlightedItemIndex:selected]; // any change of an item selects the one that is highlighted
    [shown setImage:arrows];
    if (chosen >= 0)
        [[list menu] performActionForItemAtIndex:chosen];
}

- (void)drawBorderAndBackgroundForMenuItemCell:(NSMenuItemCell*)cell
                                     withFrame:(NSRect)frame
                                        inView:(NSView*)view
                                         state:(GSThemeControlState)state
                                  isHorizontal:(BOOL)horizontal
{
    [[NSColor controlColor] set];
    NSRectFill(frame);
    if ([cell isHighlighted])
        drawRounded(NSInsetRect(frame, 3, 0), kRadius - 1, [NSColor selectedControlColor], nil);
}

- (void)drawMenuRect:(NSRect)rect inView:(NSView*)view isHorizontal:(BOOL)horizontal itemCells:(NSArray*)cells
{
    [super drawMenuRect:rect inView:view isHorizontal:horizontal itemCells:cells];
    drawRounded([view bounds], 0, nil, [NSColor controlShadowColor]);
}

/// A knob in its slot, without arrows.
- (void)drawScrollerRect:(NSRect)rect
                  inView:(NSScroller*)scroller
                 hitPart:(NSScrollerPart)part
            isHorizontal:(BOOL)horizontal
{
    [[NSColor scrollBarColor] set];
    NSRectFill([scroller bounds]);
    drawRounded(NSInsetRect([scroller rectForPart:NSScrollerKnob], 3, 3), 4, [NSColor knobColor], nil);
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

- (void)drawProgressIndicatorBarDeterminate:(NSRect)bounds
{
    drawRounded(bounds, 1, [NSColor selectedControlColor], nil);
}

@end

void useTheme(BOOL dark)
{
    // A separator is as high as an item, as the toolkit's windows for lists expect.
    NSDictionary* sizes = @{
        @"GSScrollerDefaultWidth" : @"14",
        @"GSScrollViewNoInnerBorder" : @"YES",
        @"GSMenuSeparatorHeight" : @"24"
    };
    [[NSUserDefaults standardUserDefaults] registerDefaults:sizes];
    [GSTheme setTheme:[[[FlatTheme alloc] initWithBundle:[NSBundle mainBundle]] autorelease]];
    // It would go back to the theme that the user's settings name whenever one of them changes.
    [[NSNotificationCenter defaultCenter] removeObserver:[GSTheme class]
                                                    name:NSUserDefaultsDidChangeNotification
                                                  object:nil];
    setSystemColors(dark);
    setSystemImages();
    for (Class cell in @[ [NSButtonCell class], [NSMenuItemCell class] ])
        class_replaceMethod(cell, @selector(textColor), reinterpret_cast<IMP>(textColorOf), "@@:");
    class_replaceMethod([NSPopUpButton class], @selector(mouseDown:), reinterpret_cast<IMP>(openList),
                        "v@:@");
}
