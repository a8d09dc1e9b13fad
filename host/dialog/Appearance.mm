#include "Appearance.h"

#include "Desktop.h"

#include <Theme.h>

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
    NSDictionary* keys =
        [NSDictionary dictionaryWithObjectsAndKeys:@"copy:", @"Control-c", @"cut:", @"Control-x",
                                                   @"paste:", @"Control-v", @"selectAll:", @"Control-a", nil];
    NSDictionary* defaults = [NSDictionary
        dictionaryWithObjectsAndKeys:@"YES", @"GSSuppressAppIcon", @"NSWindows95InterfaceStyle",
                                     @"NSInterfaceStyleDefault", [NSNumber numberWithDouble:desktopScale()],
                                     @"GSScaleFactor", keys, @"GSKeyBindings", nil];
    [[NSUserDefaults standardUserDefaults] registerDefaults:defaults];
    registerFonts();
}

void applyAppearance(const std::string& wanted)
{
    useTheme(wanted.empty() ? desktopIsDark() : wanted == "dark");
}
