#include "ThemeDrawing.h"

#include <vector>

void setSystemColors(BOOL dark)
{
    struct {
        unsigned light, dark;
        NSString* names;
    } const colors[] = {
        {0xF5F5F7, 0x2B2C30, @"windowBackground"},
        {0xFFFFFF, 0x1E1F22, @"controlBackground textBackground rowBackground"},
        {0xFFFFFF, 0x414349, @"control controlHighlight highlight toolTip"},
        {0xE4E4E9, 0x36383D, @"controlLightHighlight"},
        {0xC3C4CB, 0x5A5C64, @"controlShadow windowFrame"},
        {0x8E9099, 0x7A7D87, @"controlDarkShadow shadow selectedKnob"},
        {0x1C1D21, 0xECEDF0, @"controlText text selectedText toolTipText windowFrameText"},
        {0x8B8D96, 0x85878F, @"disabledControlText"},
        {0xE1E2E7, 0x3A3B41, @"grid"},
        {0xECEDF1, 0x36383D, @"header"},
        {0x4A4C55, 0xC7C9D1, @"headerText"},
        {0xB4B6BF, 0x6D7079, @"knob"},
        {0xEFEFF3, 0x26272B, @"scrollBar"},
        {0x2B6CD9, 0x2F69C8, @"selectedControl alternateSelectedControl selectedMenuItem"},
        {0x2B6CD9, 0x5C94F0, @"keyboardFocusIndicator"},
        {0xFFFFFF, 0xFFFFFF, @"selectedControlText alternateSelectedControlText selectedMenuItemText"},
        {0xB9D3F8, 0x2C4F86, @"selectedTextBackground"},
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

void drawRounded(NSRect frame, CGFloat radius, NSColor* fill, NSColor* outline, CGFloat width)
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

void drawArrow(NSRect frame, Arrow direction, BOOL flipped)
{
    CGFloat tip = ((direction == Arrow::Up) != flipped) || direction == Arrow::Right ? 1.5 : -1.5;
    if (direction == Arrow::Up || direction == Arrow::Down)
        drawLine(frame, {{-3, -tip}, {0, tip}, {3, -tip}}, 1.5);
    else
        drawLine(frame, {{-tip, -3}, {tip, 0}, {-tip, 3}}, 1.5);
}

#pragma mark Images

static void drawTick(NSRect frame)
{
    drawLine(frame, {{-4, 0}, {-1, -3}, {4, 3}}, 2);
}

/// The box of a check box, with some room to its text.
static NSRect boxOf(NSRect frame)
{
    return NSMakeRect(NSMinX(frame), NSMinY(frame) + 1, 15, 15);
}

static void drawSwitchOff(NSRect frame)
{
    drawRounded(boxOf(frame), 3.5, [NSColor controlBackgroundColor], [NSColor controlDarkShadowColor]);
}

static void drawSwitchOn(NSRect frame)
{
    drawRounded(boxOf(frame), 3.5, [NSColor selectedControlColor], nil);
    [[NSColor selectedControlTextColor] set];
    drawTick(boxOf(frame));
}

static void drawMenuTick(NSRect frame)
{
    [[NSColor controlTextColor] set];
    drawTick(frame);
}

static void drawChooser(NSRect frame)
{
    [[NSColor headerTextColor] set];
    drawArrow(NSOffsetRect(frame, 0, 3.5), Arrow::Up, NO);
    drawArrow(NSOffsetRect(frame, 0, -3.5), Arrow::Down, NO);
}

/// A printer whose sheet carries the process colours.
static void drawIcon(NSRect)
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

/// Draws one image at whatever resolution it is wanted.
@interface ThemeImage : NSObject
{
@public
    CGFloat size;
    void (*draw)(NSRect frame);
}
@end

@implementation ThemeImage

- (void)draw:(NSImageRep*)representation
{
    draw(NSMakeRect(0, 0, size, size));
}

@end

void setSystemImages()
{
    const struct {
        NSString* name;
        CGFloat size;
        void (*draw)(NSRect frame);
    } images[] = {
        {@"GSSwitch", 18, drawSwitchOff},         {@"GSSwitchSelected", 18, drawSwitchOn},
        {@"GSMenuSelected", 14, drawMenuTick},    {@"common_Nibble", 14, drawChooser},
        {@"common_3DArrowDown", 14, drawChooser}, {@"NSApplicationIcon", 48, drawIcon},
    };
    for (const auto& row : images) {
        ThemeImage* drawing = [[ThemeImage alloc] init]; // as long as the image: to the end
        drawing->size = row.size;
        drawing->draw = row.draw;
        NSImageRep* vector = [[[NSCustomImageRep alloc] initWithDrawSelector:@selector(draw:)
                                                                    delegate:drawing] autorelease];
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
