// The panel's rules and presets in the print dialog, said as a user would say them.
#include "panels/PresetRules.h"
#include "support/DialogScript.h"

#include <cups/ppd.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <tuple>

namespace {

using nlohmann::json;
using Lines = std::vector<std::string>;

const Lines kOpen = {"open",    "view",    "choose menu_QuickColor 3", "controls",
                     "restore", "summary", "choose menu_QuickColor 3"};

DialogRun run(Lines lines, const Lines& arguments = {"--ppd", kPpd})
{
    lines.insert(lines.begin(), kOpen.begin(), kOpen.end());
    DialogRun dialog = runDialog(arguments, lines);
    EXPECT_EQ(dialog.process.status, 0) << dialog.process.out.substr(0, 2000) << dialog.process.err;
    EXPECT_EQ(dialog.answers.size(), lines.size());
    return dialog;
}

std::string choose(const std::string& menu, int item)
{
    return "choose " + menu + " " + std::to_string(item);
}

/// State `n` below 64 of the controls that decide, each setting in all combinations with those that decide on
/// the same control: what leads to it, and which controls may then be used.
struct State {
    explicit State(int n)
    {
        const int gray = n & 1, a = n >> 1 & 1, b = n >> 2 & 1, c = n >> 3 & 1, economy = n >> 4 & 1;
        const int edge = n >> 5 & 1, quick = (n ^ n >> 3) & 3, simulation = a ^ c;
        const int source[] = {a, b * 3, c}, destination[] = {b, c * 2, a * 3};
        lines = {"check check_ColorAsGrayscale 0", choose("menu_EdgeStrength", edge * 2),
                 choose("menu_sSimulationProfile", simulation)};
        enabled = {{"menu_QuickColor", true},
                   {"menu_Brightness", true},
                   {"menu_EdgeStrength", true},
                   {"button_AdvanceColorOptions", quick == 3},
                   {"menu_sSimulationProfile", !gray},
                   {"menu_sMatchPaperColor", !gray && simulation},
                   {"menu_sCMYKGrayTreatment", !gray && simulation}};
        for (int i = 0; i < 3; ++i) {
            std::string menu = std::string("menu_") + "itg"[i];
            lines.push_back(choose(menu + "RGBSource", source[i]));
            lines.push_back(choose(menu + "DestinationProfile", destination[i]));
            enabled[menu + "RGBSource"] = enabled[menu + "DestinationProfile"] = !gray;
            enabled[menu + "RGBIntent"] = !gray && source[i];
            enabled[menu + "RGBGrayTreatment"] = !gray && !destination[i];
            enabled[menu + "Halftone"] = true;
            // Economy mode lowers the edges of images and graphics, never those of text.
            enabled[menu + "EdgeEnhancement"] = edge && (!economy || i == 1);
        }
        lines.insert(lines.end(), {"check check_EconomyPrint " + std::to_string(economy),
                                   "check check_ColorAsGrayscale " + std::to_string(gray),
                                   choose("menu_QuickColor", quick), "controls"});
    }

    Lines lines;
    std::map<std::string, bool> enabled;
};

/// An advanced setting: its pop-up, its key, its name in the summary.
struct Setting {
    std::string menu, key, name;
};

std::vector<Setting> advancedSettings()
{
    std::vector<Setting> all;
    for (std::string object : {"Image", "Text", "Graphics"})
        for (auto [menu, key, name] : {std::tuple("RGBSource", "RGBSource", "RGB Source"),
                                       {"RGBIntent", "RenderIntent", "RGB Intent"},
                                       {"RGBGrayTreatment", "GrayTreatment", "RGB Gray Treatment"},
                                       {"DestinationProfile", "DestinationProfile", "Destination Profile"},
                                       {"Halftone", "Halftone", "Halftone"},
                                       {"EdgeEnhancement", "EdgeEnhance", "Edge Enhancement"}})
            all.push_back({std::string("menu_") + static_cast<char>(tolower(object[0])) + menu,
                           "Vel" + object + key, object + " " + name});
    all.push_back({"menu_sSimulationProfile", "VelSimSource", "Simulation Profile"});
    all.push_back({"menu_sMatchPaperColor", "VelSimRenderIntent", "Match Paper Color"});
    all.push_back({"menu_sCMYKGrayTreatment", "VelSimGrayTreatment", "CMYK Gray Treatment"});
    return all;
}

/// What the presets dictate, without and with economy mode: the item of each advanced setting, in order.
const char* const kPresets[3][2] = {{"101010111021111011000", "101010111021111010000"},
                                    {"100010100010100010000", "100010100010100010000"},
                                    {"111021111021111021000", "111020111021111020000"}};
/// The names that economy mode adds to the summary a second time.
const Lines kNamedTwice[4] = {
    {"Graphics Edge Enhancement"}, {}, {"Image Edge Enhancement", "Graphics Edge Enhancement"}, {}};

} // namespace

TEST(PanelRules, DisableInEveryStateWhatAUserExpects)
{
    std::vector<State> states;
    Lines lines;
    for (int n = 0; n < 64; ++n) {
        const Lines& more = states.emplace_back(n).lines;
        lines.insert(lines.end(), more.begin(), more.end());
    }
    DialogRun dialog = run(lines);
    // Quick Color has an effect on its own view only.
    EXPECT_EQ(controlRow(dialog[3], "menu_iRGBIntent")["enabled"], true);
    size_t answer = kOpen.size() - 1;
    for (const State& state : states) {
        answer += state.lines.size();
        for (const auto& [field, enabled] : state.enabled)
            EXPECT_EQ(controlRow(dialog[answer], field).value("enabled", !enabled), enabled)
                << field << " after " << json(state.lines);
    }
}

TEST(PanelRules, APresetDecidesWhatIsPrintedAndSummarised)
{
    std::unique_ptr<ppd_file_t, decltype(&ppdClose)> ppd(ppdOpenFile(kPpd), &ppdClose);
    for (int preset : {0, 1, 2, 3})
        for (int economy : {0, 1}) {
            SCOPED_TRACE("preset " + std::to_string(preset) + " economy " + std::to_string(economy));
            Lines lines, names;
            json wanted;
            for (const Setting& setting : advancedSettings()) {
                const ppd_option_t* option = ppdFindOption(ppd.get(), setting.key.c_str());
                // The user's own choices: the last of each menu, which is no preset's.
                int item = option->num_choices - 1;
                lines.push_back(choose(setting.menu, item));
                if (preset < 3)
                    item = kPresets[preset][economy][names.size()] - '0';
                wanted[setting.name] = {option->choices[item].choice, option->choices[item].text};
                names.push_back(setting.name);
            }
            lines.insert(lines.end(),
                         {"check check_EconomyPrint " + std::to_string(economy),
                          choose("menu_QuickColor", preset), "save", "summary", "should-print", "job"});
            DialogRun dialog = run(lines);
            json job = dialog.answers.back()["options"], summary = dialog[dialog.answers.size() - 3];
            for (const Setting& s : advancedSettings())
                EXPECT_EQ(json({job[s.key], summary["values"][s.name]}), wanted[s.name]) << s.name;
            if (economy)
                names.insert(names.end(), kNamedTwice[preset].begin(), kNamedTwice[preset].end());
            Lines order = summary["order"];
            ASSERT_GT(order.size(), names.size());
            EXPECT_EQ(Lines(order.end() - static_cast<long>(names.size()), order.end()), names);
        }
}

TEST(PanelRules, LeaveOutAnItemThatThePpdLacksAndKeepChoicesOfOneTextApart)
{
    Sandbox sandbox;
    std::string text =
        replaced(readFile(kPpd), "*DefaultVelImageHalftone: Gradation", "*DefaultVelImageHalftone: Auto");
    for (const char* without : {"Gradation", "Detail", "ErrorDiffusion"})
        text = replaced(text, std::string("*VelImageHalftone ") + without, "*%");
    text = replaced(text, "*VelTextHalftone Detail/Detail:", "*VelTextHalftone Detail/Gradation:");
    auto file = sandbox / "settings.plist";
    Lines arguments = {"--ppd", sandbox.write("printer.ppd", text), "--settings", file};
    for (const auto& [item, keyword] : {std::pair(1, "Gradation"), {2, "Detail"}}) {
        DialogRun dialog = run({choose("menu_tHalftone", item), "save", "summary", "job"}, arguments);
        EXPECT_EQ(dialog[9]["values"]["Text Halftone"], "Gradation");
        EXPECT_EQ(dialog[10]["options"]["VelTextHalftone"], keyword);
        dialog = run({"controls", "choose menu_QuickColor 0", "summary", "should-print", "job"}, arguments);
        EXPECT_EQ(controlRow(dialog[7], "menu_tHalftone")["value"], item);
        EXPECT_FALSE(dialog[9]["values"].contains("Image Halftone"));
        EXPECT_EQ(dialog[11]["options"]["VelImageHalftone"], "Auto");
    }
    std::string odd = replaced(text, "*DefaultVelQuickColor: Document", "*DefaultVelQuickColor: Nowhere");
    DialogRun dialog = run({"keys", "panels 6A0D8B3E-E57F-11D3-B5CC-0050E4603277"},
                           {"--ppd", sandbox.write("odd.ppd", odd)});
    EXPECT_EQ(dialog[5]["order"].size(), 4u) << "nothing is dictated, and Quick Color has no value";
    EXPECT_EQ(dialog[7]["keys"].front(), "VelImageRGBSource") << "the advanced keys come first";
    EXPECT_EQ(dialog[7]["keys"].back(), "VelEdgeType");
    EXPECT_EQ(dialog[8]["panels"], nullptr) << "there is none for a page setup dialog";
}

TEST(PanelRules, CompareAndCombineAsTheirCodesSay)
{
    const std::pair<uint32_t, std::string> comparisons[] = {
        {CST_EQUAL, "010"},         {CST_NOT_EQUAL, "101"},
        {CST_LESS, "100"},          {CST_GREATER, "001"},
        {CST_LESS_EQUAL, "110"},    {CST_EQUAL_LESS, "110"},
        {CST_GREATER_EQUAL, "011"}, {CST_EQUAL_GREATER, "011"},
        {CST_SET_VALUE, "000"},     {1008, "000"}};
    for (const auto& [code, expected] : comparisons)
        for (int value : {-1, 0, 1})
            EXPECT_EQ(compareConstraintValue(value, code, 0), expected[static_cast<size_t>(value + 1)] == '1')
                << code << " " << value;
    bool slots[kConditionSlots] = {false, true};
    for (const auto& [tokens, expected] : std::vector<std::pair<std::vector<uint32_t>, bool>>{
             {{1, CST_NOP, 1008, 4711, CST_OR, CST_NONE}, true},
             {{19, CST_OR, 20, CST_OR, 999, CST_OR, CST_NONE}, false}})
        EXPECT_EQ(evaluateExpression(tokens.data(), slots, false), expected) << tokens.size();
}
