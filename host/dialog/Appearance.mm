#include "Appearance.h"

#import <AppKit/AppKit.h>

// The toolkit draws all text in one font and has none for what that font lacks, so Japanese and Chinese would
// be question marks. A font that is not installed is passed over.
static void registerFonts()
{
    NSString* language = [[NSUserDefaults userLanguages] objectAtIndex:0];
    NSDictionary* regions =
        [NSDictionary dictionaryWithObjectsAndKeys:@"jp", @"Japanese", @"sc", @"SimplifiedChinese", nil];
    NSString* region = [regions objectForKey:language];
    if (region == nil)
        return;
    NSString* regular = [NSString stringWithFormat:@"NotoSansCJK%@-Regular", region];
    NSString* bold = [NSString stringWithFormat:@"NotoSansCJK%@-Bold", region];
    NSDictionary* fonts = [NSDictionary
        dictionaryWithObjectsAndKeys:regular, @"NSFont", regular, @"NSUserFont", bold, @"NSBoldFont", nil];
    [[NSUserDefaults standardUserDefaults] registerDefaults:fonts];
}

void registerAppearance()
{
    NSDictionary* defaults =
        [NSDictionary dictionaryWithObjectsAndKeys:@"YES", @"GSSuppressAppIcon", @"NSWindows95InterfaceStyle",
                                                   @"NSInterfaceStyleDefault", nil];
    [[NSUserDefaults standardUserDefaults] registerDefaults:defaults];
    registerFonts();
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
