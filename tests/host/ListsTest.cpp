// The dialog under a person's hands: real clicks and keys through the X server.
#include "support/DriverRoot.h"
#include "support/Process.h"

#include <gtest/gtest.h>
#include <optional>
#include <regex>

namespace {

using Steps = std::vector<std::string>;

class Lists : public ::testing::Test {
protected:
    void SetUp() override
    {
        dialog_.emplace(Steps{PDE_BUILD_DIR "/bin/printdialog", "--settings", settings()}, root_ / "log",
                        Steps{"CUPS_SERVER=/nowhere", "LANGUAGE=en"});
        ASSERT_TRUE(waitUntil([] { return hasWindow("^Print$"); }, std::chrono::seconds(30)));
        sleepMilliseconds(1500);
        hands("search --onlyvisible --name ^Print$ windowfocus");
    }

    std::string settings() const { return root_ / "settings.plist"; }

    static std::string hands(const std::string& arguments)
    {
        return runProcess({"sh", "-c", "xdotool " + arguments}).out;
    }

    static bool hasWindow(const std::string& title)
    {
        return !hands("search --onlyvisible --name '" + title + "'").empty();
    }

    static void keys(const Steps& names)
    {
        for (const std::string& name : names) {
            hands("key " + name);
            sleepMilliseconds(200);
        }
    }

    /// Clicks where a control is, seen from the lower left corner of the window.
    static void click(const std::string& title, int x, int fromBottom)
    {
        std::string frame = hands("search --onlyvisible --name '" + title + "' getwindowgeometry --shell");
        std::smatch height;
        ASSERT_TRUE(std::regex_search(frame, height, std::regex("HEIGHT=([0-9]+)"))) << frame;
        int y = std::stoi(height[1]) - fromBottom;
        hands("search --onlyvisible --name '" + title + "' mousemove --window %1 " + std::to_string(x) + " " +
              std::to_string(y) + " sleep 0.2 mousedown 1 sleep 0.2 mouseup 1 sleep 0.4");
    }

    /// Whether the print settings, written when the dialog has ended, hold this choice.
    bool hasChosen(const std::string& option, const std::string& choice)
    {
        EXPECT_TRUE(waitUntil([&] { return !dialog_->running(); }));
        std::regex entry("<key>" + option + "</key>\\s*<string>" + choice + "<");
        return std::regex_search(readFile(settings()), entry);
    }

    DriverRoot root_;
    std::optional<BackgroundProcess> dialog_;
};

constexpr char kProfiles[] = "^Profile Management$";
constexpr int kProfileList = 510;
// Where controls are, in the English dialog.
constexpr int kMiddle = 400, kShow = 418, kQuickColor = 354, kBrightness = 320, kButtonRow = 86;

TEST_F(Lists, StayOpenAfterAClickAndHaveEveryKey)
{
    keys({"Tab", "Tab", "ctrl+a", "7", "ctrl+a", "ctrl+c", "Right", "ctrl+v"}); // "Copies"
    click("^Print$", kMiddle, kQuickColor);
    keys({"Down", "Return"}); // "Photo", and not Print
    click("^Print$", kMiddle, kBrightness);
    keys({"End", "Escape"}); // nothing, and not Cancel
    ASSERT_TRUE(hasWindow("^Print$"));
    keys({"Tab", "Tab", "Tab", "space", "s", "Return"}); // "Edge Type", opened and chosen by keys
    keys({"Return", "Return"});                          // Print, and Close
    EXPECT_TRUE(hasChosen("VelQuickColor", "Photo"));
    EXPECT_TRUE(hasChosen("VelBrightness", "Normal"));
    EXPECT_TRUE(hasChosen("VelEdgeType", "Strong"));
    EXPECT_TRUE(hasChosen("copies", "77"));
}

TEST_F(Lists, KeepTheirKeysInTheProfileWindowToo)
{
    click("^Print$", kMiddle, kQuickColor);
    keys({"c", "Return"}); // "Custom"
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
    EXPECT_TRUE(hasChosen("VelTextRGBSource", "AdobeRGB"));
}

} // namespace
