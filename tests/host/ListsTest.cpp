// The dialog under a person's hands: real clicks and keys through the X server.
#include "support/DriverRoot.h"
#include "support/Process.h"

#include <gtest/gtest.h>
#include <regex>

namespace {

using Steps = std::vector<std::string>;

std::string hands(const std::string& arguments)
{
    return runProcess({"sh", "-c", "xdotool " + arguments}).out;
}

bool hasWindow(const std::string& title)
{
    return !hands("search --onlyvisible --name '" + title + "'").empty();
}

void keys(const Steps& names)
{
    for (const std::string& name : names) {
        hands("key " + name);
        sleepMilliseconds(200);
    }
}

/// Clicks where a control is, seen from the lower left corner of the window.
void click(const std::string& title, int x, int fromBottom)
{
    std::string frame = hands("search --onlyvisible --name '" + title + "' getwindowgeometry --shell");
    std::smatch height;
    ASSERT_TRUE(std::regex_search(frame, height, std::regex("HEIGHT=([0-9]+)"))) << frame;
    int y = std::stoi(height[1]) - fromBottom;
    hands("search --onlyvisible --name '" + title + "' mousemove --window %1 " + std::to_string(x) + " " +
          std::to_string(y) + " sleep 0.2 mousedown 1 sleep 0.2 mouseup 1 sleep 0.4");
}

constexpr char kProfiles[] = "^Profile Management$";
constexpr int kProfileList = 510;
// Where controls are, in the English dialog.
constexpr int kMiddle = 400, kShow = 418, kQuickColor = 354, kBrightness = 320, kButtonRow = 86;

TEST(Lists, StayOpenAfterAClickAndHaveEveryKeyInTheProfileWindowToo)
{
    DriverRoot root;
    BackgroundProcess dialog({PDE_BUILD_DIR "/bin/printdialog", "--settings", root / "settings.plist"},
                             root / "log", {"CUPS_SERVER=/nowhere", "LANGUAGE=en"});
    ASSERT_TRUE(waitUntil([] { return hasWindow("^Print$"); }, std::chrono::seconds(30)));
    sleepMilliseconds(1500);
    hands("search --onlyvisible --name ^Print$ windowfocus");
    keys({"Tab", "Tab", "ctrl+a", "7", "ctrl+a", "ctrl+c", "Right", "ctrl+v"}); // "Copies"
    click("^Print$", kMiddle, kQuickColor);
    keys({"Down", "Down", "Down", "Return"}); // "Custom", and not Print
    click("^Print$", kMiddle, kBrightness);
    keys({"End", "Escape"}); // nothing, and not Cancel
    ASSERT_TRUE(hasWindow("^Print$"));
    keys({"Tab", "Tab", "Tab", "space", "s", "Return"}); // "Edge Type", opened and chosen by keys
    click("^Print$", 500, kButtonRow);
    click("^Print$", 100, kButtonRow);
    ASSERT_TRUE(waitUntil([] { return hasWindow(kProfiles); }));
    for (const char* key : {"Return", "Escape"}) {
        click(kProfiles, 270, kProfileList);
        keys({"Down", key});
        EXPECT_TRUE(hasWindow(kProfiles)) << key;
    }
    keys({"Escape"});
    EXPECT_TRUE(waitUntil([] { return !hasWindow(kProfiles); }));
    // The tabs have the keys before their page: its first list is the text's.
    click("^Print$", kMiddle, kShow);
    keys({"Escape", "Tab", "Right", "Tab", "space", "End", "Return"});
    keys({"Return", "Return"}); // Print, and Close
    EXPECT_TRUE(waitUntil([&] { return !dialog.running(); }));
    std::string chosen = std::regex_replace(readFile(root / "settings.plist"), std::regex("\\s"), "");
    for (const char* entry : {"VelQuickColor</key><string>UserDefined<", "VelBrightness</key><string>Normal<",
                              "VelEdgeType</key><string>Strong<", "copies</key><string>77<",
                              "VelTextRGBSource</key><string>AdobeRGB<"})
        EXPECT_NE(chosen.find(entry), std::string::npos) << entry << " is not in " << chosen;
}

} // namespace
