#include "ThemeShapes.h"

static constexpr NSPoint kTick[] = {{0.22, 0.50}, {0.43, 0.28}, {0.78, 0.72}};

/// The box of a check box, with some room to its text.
static NSRect boxOf(NSRect frame)
{
    return NSMakeRect(NSMinX(frame), NSMinY(frame) + 1, NSWidth(frame) - 3, NSHeight(frame) - 3);
}

static void drawSwitchOff(NSRect frame)
{
    drawRounded(boxOf(frame), 3.5, [NSColor controlBackgroundColor], [NSColor controlDarkShadowColor]);
}

static void drawSwitchOn(NSRect frame)
{
    drawRounded(boxOf(frame), 3.5, accentColor(), nil);
    [[NSColor selectedControlTextColor] set];
    strokeThrough(boxOf(frame), kTick, 3, 2);
}

static void drawMenuTick(NSRect frame)
{
    [[NSColor controlTextColor] set];
    strokeThrough(frame, kTick, 3, 1.6);
}

/// The arrows of a pop-up: one up, one down.
static void drawChooser(NSRect frame)
{
    constexpr NSPoint up[] = {{0.25, 0.62}, {0.5, 0.85}, {0.75, 0.62}};
    constexpr NSPoint down[] = {{0.25, 0.38}, {0.5, 0.15}, {0.75, 0.38}};
    [[NSColor headerTextColor] set];
    strokeThrough(frame, up, 3, 1.5);
    strokeThrough(frame, down, 3, 1.5);
}

/// A printer whose sheet carries the four process colours.
static void drawIcon(NSRect frame)
{
    CGFloat unit = NSWidth(frame) / 48;
    auto part = [&](CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
        return NSMakeRect(NSMinX(frame) + x * unit, NSMinY(frame) + y * unit, width * unit, height * unit);
    };
    NSColor* body = [NSColor colorWithCalibratedRed:0.27 green:0.31 blue:0.40 alpha:1];
    NSColor* paper = [NSColor colorWithCalibratedWhite:0.98 alpha:1];
    NSColor* edge = [NSColor colorWithCalibratedWhite:0.70 alpha:1];
    drawRounded(part(11, 28, 26, 17), 2 * unit, paper, edge);
    drawRounded(part(3, 13, 42, 21), 5 * unit, body, nil);
    drawRounded(part(37, 26, 4, 4), 2 * unit,
                [NSColor colorWithCalibratedRed:0.35 green:0.85 blue:0.5 alpha:1], nil);
    drawRounded(part(9, 3, 30, 20), 2 * unit, paper, edge);
    NSColor* inks[] = {[NSColor cyanColor], [NSColor magentaColor], [NSColor yellowColor], body};
    for (int i = 0; i < 4; ++i)
        drawRounded(part(13 + 6 * i, 7, 4, 12), unit, inks[i], nil);
}

struct Drawing {
    NSString* name;
    CGFloat size;
    void (*draw)(NSRect frame);
};

/// Draws one image at whatever resolution it is wanted.
@interface ThemeDrawing : NSObject
{
@public
    Drawing drawing;
}
@end

@implementation ThemeDrawing

- (void)draw:(NSImageRep*)representation
{
    drawing.draw(NSMakeRect(0, 0, drawing.size, drawing.size));
}

@end

void setSystemImages()
{
    const Drawing drawings[] = {
        {@"GSSwitch", 18, drawSwitchOff},         {@"GSSwitchSelected", 18, drawSwitchOn},
        {@"GSMenuSelected", 14, drawMenuTick},    {@"common_Nibble", 14, drawChooser},
        {@"common_3DArrowDown", 14, drawChooser}, {@"NSApplicationIcon", 48, drawIcon},
    };
    for (const Drawing& drawing : drawings) {
        ThemeDrawing* drawer = [[ThemeDrawing alloc] init]; // as long as the image: to the end
        drawer->drawing = drawing;
        NSImageRep* vector = [[[NSCustomImageRep alloc] initWithDrawSelector:@selector(draw:)
                                                                    delegate:drawer] autorelease];
        NSSize size = NSMakeSize(drawing.size, drawing.size);
        [vector setSize:size];
        NSImage* image = [[NSImage alloc] initWithSize:size];
        [image addRepresentation:vector];
        [image setCacheMode:NSImageCacheNever];
        NSImage* earlier = [NSImage imageNamed:drawing.name];
        (void)[earlier setName:nil];
        (void)[image setName:drawing.name];
    }
    [NSApp setApplicationIconImage:[NSImage imageNamed:@"NSApplicationIcon"]];
}
