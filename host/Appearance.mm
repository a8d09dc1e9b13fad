#include "Appearance.h"

#import <AppKit/AppKit.h>

void registerAppearance()
{
    NSDictionary* defaults =
        [NSDictionary dictionaryWithObjectsAndKeys:@"YES", @"GSSuppressAppIcon", @"NSWindows95InterfaceStyle",
                                                   @"NSInterfaceStyleDefault", nil];
    [[NSUserDefaults standardUserDefaults] registerDefaults:defaults];
}

void applyColors()
{
    struct {
        NSString* name;
        CGFloat white;
    } const greys[] = {
        {@"controlColor", 0.93},
        {@"windowBackgroundColor", 0.93},
        {@"controlBackgroundColor", 0.93},
        {@"controlShadowColor", 0.62},
        {@"controlDarkShadowColor", 0.45},
        {@"controlHighlightColor", 0.93},
        {@"controlLightHighlightColor", 0.70},
        {@"scrollBarColor", 0.80},
        {@"headerColor", 0.88},
        {@"gridColor", 0.85},
    };
    NSColorList* system = [NSColorList colorListNamed:@"System"];
    for (const auto& grey : greys)
        [system setColor:[NSColor colorWithCalibratedWhite:grey.white alpha:1] forKey:grey.name];
}
