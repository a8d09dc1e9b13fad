#include "ThemeShapes.h"

static NSColor* colorOf(unsigned rgb)
{
    return [NSColor colorWithCalibratedRed:(rgb >> 16 & 255) / 255.0
                                     green:(rgb >> 8 & 255) / 255.0
                                      blue:(rgb & 255) / 255.0
                                     alpha:1];
}

void setSystemColors(BOOL dark)
{
    struct {
        NSString* name;
        unsigned light, dark;
    } const colors[] = {
        {@"windowBackgroundColor", 0xF5F5F7, 0x2B2C30},
        {@"controlBackgroundColor", 0xFFFFFF, 0x1E1F22},
        {@"controlColor", 0xFFFFFF, 0x414349},
        {@"controlHighlightColor", 0xFFFFFF, 0x4B4D54},
        {@"controlLightHighlightColor", 0xE4E4E9, 0x36383D},
        {@"controlShadowColor", 0xC3C4CB, 0x5A5C64},
        {@"controlDarkShadowColor", 0x8E9099, 0x7A7D87},
        {@"controlTextColor", 0x1C1D21, 0xECEDF0},
        {@"disabledControlTextColor", 0x8B8D96, 0x85878F},
        {@"gridColor", 0xE1E2E7, 0x3A3B41},
        {@"headerColor", 0xECEDF1, 0x36383D},
        {@"headerTextColor", 0x4A4C55, 0xC7C9D1},
        {@"highlightColor", 0xFFFFFF, 0x4B4D54},
        {@"keyboardFocusIndicatorColor", 0x2B6CD9, 0x5C94F0},
        {@"knobColor", 0xB4B6BF, 0x6D7079},
        {@"scrollBarColor", 0xEFEFF3, 0x26272B},
        {@"selectedControlColor", 0x2B6CD9, 0x2F69C8},
        {@"selectedControlTextColor", 0xFFFFFF, 0xFFFFFF},
        {@"alternateSelectedControlColor", 0x2B6CD9, 0x2F69C8},
        {@"alternateSelectedControlTextColor", 0xFFFFFF, 0xFFFFFF},
        {@"selectedMenuItemColor", 0x2B6CD9, 0x2F69C8},
        {@"selectedMenuItemTextColor", 0xFFFFFF, 0xFFFFFF},
        {@"selectedKnobColor", 0x8E9099, 0x8E919B},
        {@"selectedTextBackgroundColor", 0xB9D3F8, 0x2C4F86},
        {@"selectedTextColor", 0x1C1D21, 0xFFFFFF},
        {@"shadowColor", 0x8E9099, 0x000000},
        {@"textBackgroundColor", 0xFFFFFF, 0x1E1F22},
        {@"textColor", 0x1C1D21, 0xECEDF0},
        {@"toolTipColor", 0xFFFFFF, 0x414349},
        {@"toolTipTextColor", 0x1C1D21, 0xECEDF0},
        {@"windowFrameColor", 0xC3C4CB, 0x5A5C64},
        {@"windowFrameTextColor", 0x1C1D21, 0xECEDF0},
        {@"rowBackgroundColor", 0xFFFFFF, 0x1E1F22},
        {@"alternateRowBackgroundColor", 0xF7F7FA, 0x232428},
    };
    NSColorList* system = [NSColorList colorListNamed:@"System"];
    for (const auto& color : colors)
        [system setColor:colorOf(dark ? color.dark : color.light) forKey:color.name];
}

NSColor* accentColor()
{
    return [NSColor selectedControlColor];
}

NSColor* outlineColor()
{
    return [NSColor controlShadowColor];
}

void drawRounded(NSRect frame, CGFloat radius, NSColor* fill, NSColor* outline)
{
    if (outline != nil)
        frame = NSInsetRect(frame, 0.5, 0.5);
    NSBezierPath* path = [NSBezierPath bezierPathWithRoundedRect:frame xRadius:radius yRadius:radius];
    [fill set];
    if (fill != nil)
        [path fill];
    [outline set];
    if (outline != nil)
        [path stroke];
}

void strokeThrough(NSRect frame, const NSPoint* points, int count, CGFloat width)
{
    NSBezierPath* path = [NSBezierPath bezierPath];
    for (int i = 0; i < count; ++i) {
        NSPoint at = NSMakePoint(NSMinX(frame) + points[i].x * NSWidth(frame),
                                 NSMinY(frame) + points[i].y * NSHeight(frame));
        if (i == 0)
            [path moveToPoint:at];
        else
            [path lineToPoint:at];
    }
    [path setLineWidth:width];
    [path setLineCapStyle:NSRoundLineCapStyle];
    [path setLineJoinStyle:NSRoundLineJoinStyle];
    [path stroke];
}
