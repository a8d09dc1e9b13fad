#include "Appearance.h"

#include "Desktop.h"

#include <Theme.h>

// Names in any script are readable in every language: what the font of the text lacks is taken from the
// preferred ones. In Japanese and Chinese all text is in the language's own font. One that is not installed
// is passed over.
static void registerFonts()
{
    NSString* language = [[NSUserDefaults userLanguages] objectAtIndex:0];
    NSDictionary* regions =
        [NSDictionary dictionaryWithObjectsAndKeys:@"jp", @"Japanese", @"sc", @"SimplifiedChinese", nil];
    NSString* region = [regions objectForKey:language];
    NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
    [defaults registerDefaults:@{@"NSPreferredFonts" : @[ @"DejaVuSans", @"NotoSansCJKjp-Regular" ]}];
    if (region == nil)
        return;
    NSString* regular = [NSString stringWithFormat:@"NotoSansCJK%@-Regular", region];
    NSString* bold = [NSString stringWithFormat:@"NotoSansCJK%@-Bold", region];
    NSDictionary* fonts = [NSDictionary
        dictionaryWithObjectsAndKeys:regular, @"NSFont", regular, @"NSUserFont", bold, @"NSBoldFont", nil];
    [defaults registerDefaults:fonts];
}

void registerAppearance()
{
    NSDictionary* keys =
        [NSDictionary dictionaryWithObjectsAndKeys:@"copy:", @"Control-c", @"cut:", @"Control-x",
                                                   @"paste:", @"Control-v", @"selectAll:", @"Control-a", nil];
    double scale = desktopScale();
    // Widths that are rounded to whole units would set scaled letters unevenly.
    NSString* hinting = scale == 1 ? @"33" : @"17";
    [[NSUserDefaults standardUserDefaults] registerDefaults:@{
        @"GSSuppressAppIcon" : @"YES",
        @"NSInterfaceStyleDefault" : @"NSWindows95InterfaceStyle",
        @"GSScaleFactor" : [NSNumber numberWithDouble:scale],
        @"GSFontHinting" : hinting,
        @"GSKeyBindings" : keys
    }];
    registerFonts();
}

void applyAppearance(const std::string& wanted)
{
    useTheme(wanted.empty() ? desktopIsDark() : wanted == "dark");
}
