// The panel's rules and presets in the print dialog, said as a user would say them.
#include "panels/PresetRules.h"
#include "support/DialogScript.h"
#include "support/SamplePpd.h"
#include "support/Sandbox.h"

#include <cups/ppd.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <set>

namespace {

using nlohmann::json;
using Lines = std::vector<std::string>;

const char* const kPpd = PDE_SOURCE_DIR "/printer/R4270.ppd";

DialogRun run(Lines lines, const std::string& ppd = kPpd)
{
    lines.insert(lines.begin(), {"open", "view", "restore", "choose menu_QuickColor 3", "controls"});
    DialogRun dialog = runDialog({"--ppd", ppd}, lines);
    EXPECT_EQ(dialog.process.status, 0) << dialog.process.out.substr(0, 2000) << dialog.process.err;
    EXPECT_EQ(dialog.answers.size(), lines.size());
    return dialog;
}

std::string choose(const std::string& menu, int item)
{
    return "choose " + menu + " " + std::to_string(item);
}

/// One state of the controls that decide.
struct State {
    int quick, edge, gray, economy, source[3], destination[3], simulation;
};

/// Each setting that decides in all combinations with those that decide on the same control.
std::vector<State> states()
{
    std::vector<State> all;
    for (int i = 0; i < 64; ++i) {
        int gray = i & 1, a = i >> 1 & 1, b = i >> 2 & 1, c = i >> 3 & 1, economy = i >> 4 & 1, edge = i >> 5;
        all.push_back({(i ^ i >> 3) & 3, edge * 2, gray, economy, {a, b * 3, c}, {b, c * 2, a * 3}, a ^ c});
    }
    return all;
}

std::map<std::string, bool> disabled(const State& s)
{
    std::map<std::string, bool> all = {
        {"menu_QuickColor", false},
        {"menu_Brightness", false},
        {"menu_EdgeStrength", false},
        {"button_AdvanceColorOptions", s.quick != 3},
        {"menu_sSimulationProfile", s.gray},
        {"menu_sMatchPaperColor", s.gray || s.simulation == 0},
        {"menu_sCMYKGrayTreatment", s.gray || s.simulation == 0},
    };
    for (int i = 0; i < 3; ++i) {
        std::string menu = std::string("menu_") + "itg"[i];
        all[menu + "RGBSource"] = all[menu + "DestinationProfile"] = s.gray;
        all[menu + "RGBIntent"] = s.gray || s.source[i] == 0;
        all[menu + "RGBGrayTreatment"] = s.gray || s.destination[i] != 0;
        all[menu + "Halftone"] = false;
        // Economy mode lowers the edges of images and graphics, never those of text.
        all[menu + "EdgeEnhancement"] = s.edge == 0 || (s.economy && i != 1);
    }
    return all;
}

/// The advanced settings in their order, with what the presets dictate: three items, and with economy mode.
struct Setting {
    std::string key, name, plain, economy;
};

const std::vector<Setting> kSettings = {
    {"VelImageRGBSource", "Image RGB Source", "111", "111"},
    {"VelImageRenderIntent", "Image RGB Intent", "001", "001"},
    {"VelImageGrayTreatment", "Image RGB Gray Treatment", "101", "101"},
    {"VelImageDestinationProfile", "Image Destination Profile", "000", "000"},
    {"VelImageHalftone", "Image Halftone", "112", "112"},
    {"VelImageEdgeEnhance", "Image Edge Enhancement", "001", "000"},
    {"VelTextRGBSource", "Text RGB Source", "111", "111"},
    {"VelTextRenderIntent", "Text RGB Intent", "101", "101"},
    {"VelTextGrayTreatment", "Text RGB Gray Treatment", "101", "101"},
    {"VelTextDestinationProfile", "Text Destination Profile", "000", "000"},
    {"VelTextHalftone", "Text Halftone", "212", "212"},
    {"VelTextEdgeEnhance", "Text Edge Enhancement", "101", "101"},
    {"VelGraphicsRGBSource", "Graphics RGB Source", "111", "111"},
    {"VelGraphicsRenderIntent", "Graphics RGB Intent", "101", "101"},
    {"VelGraphicsGrayTreatment", "Graphics RGB Gray Treatment", "101", "101"},
    {"VelGraphicsDestinationProfile", "Graphics Destination Profile", "000", "000"},
    {"VelGraphicsHalftone", "Graphics Halftone", "112", "112"},
    {"VelGraphicsEdgeEnhance", "Graphics Edge Enhancement", "101", "000"},
    {"VelSimSource", "Simulation Profile", "000", "000"},
    {"VelSimRenderIntent", "Match Paper Color", "000", "000"},
    {"VelSimGrayTreatment", "CMYK Gray Treatment", "000", "000"},
};

/// Names that economy mode adds to the summary a second time, by preset.
const std::vector<Lines> kNamedTwice = {
    {"Graphics Edge Enhancement"}, {}, {"Image Edge Enhancement", "Graphics Edge Enhancement"}, {}};

/// The rows with an option that stand behind the first view's.
std::vector<json> advancedRows(const json& controls)
{
    std::vector<json> rows;
    bool advanced = false;
    for (const json& row : controls["controls"]) {
        if (advanced && row["ppdKey"] != "")
            rows.push_back(row);
        advanced = advanced || row["field"] == "button_AdvanceColorOptions";
    }
    return rows;
}

/// Expects the job and the summary of one preset; preset 3 is the user's own choices.
void expectPreset(size_t preset, bool economy, const std::vector<json>& rows)
{
    SCOPED_TRACE("preset " + std::to_string(preset) + (economy ? " with economy mode" : ""));
    // The user's own choices: the last of each menu, which is no preset's.
    Lines lines, names;
    for (const json& row : rows)
        lines.push_back(choose(row["field"], static_cast<int>(row["items"].size()) - 1));
    lines.insert(lines.end(), {economy ? "check check_EconomyPrint 1" : "check check_EconomyPrint 0",
                               choose("menu_QuickColor", static_cast<int>(preset)), "save", "summary",
                               "should-print", "job"});
    DialogRun dialog = run(lines);
    const json& summary = dialog[dialog.answers.size() - 3];
    const json& job = dialog.answers.back()["options"];
    std::unique_ptr<ppd_file_t, decltype(&ppdClose)> ppd(ppdOpenFile(kPpd), &ppdClose);
    for (const Setting& setting : kSettings) {
        const ppd_option_t* option = ppdFindOption(ppd.get(), setting.key.c_str());
        const std::string& items = economy ? setting.economy : setting.plain;
        int item = preset == 3 ? option->num_choices - 1 : items[preset] - '0';
        EXPECT_EQ(job.value(setting.key, ""), option->choices[item].choice) << setting.key;
        EXPECT_EQ(summary["values"].value(setting.name, ""), option->choices[item].text) << setting.name;
        names.push_back(setting.name);
    }
    if (economy)
        names.insert(names.end(), kNamedTwice[preset].begin(), kNamedTwice[preset].end());
    Lines order = summary["order"];
    ASSERT_GT(order.size(), names.size());
    EXPECT_EQ(Lines(order.end() - static_cast<long>(names.size()), order.end()), names);
}

} // namespace

TEST(PanelRules, DisableInEveryStateWhatAUserExpects)
{
    Lines lines;
    for (const State& s : states()) {
        lines.insert(lines.end(), {"check check_ColorAsGrayscale 0", choose("menu_EdgeStrength", s.edge),
                                   choose("menu_sSimulationProfile", s.simulation)});
        for (size_t i = 0; i < 3; ++i) {
            lines.push_back(choose(std::string("menu_") + "itg"[i] + "RGBSource", s.source[i]));
            lines.push_back(choose(std::string("menu_") + "itg"[i] + "DestinationProfile", s.destination[i]));
        }
        lines.insert(lines.end(), {"check check_EconomyPrint " + std::to_string(s.economy),
                                   "check check_ColorAsGrayscale " + std::to_string(s.gray),
                                   choose("menu_QuickColor", s.quick), "controls"});
    }
    DialogRun dialog = run(lines);
    size_t state = 0;
    for (size_t answer = 5; answer < dialog.answers.size(); ++answer) {
        if (!dialog[answer].contains("controls"))
            continue;
        for (const auto& [field, off] : disabled(states()[state]))
            EXPECT_EQ(controlRow(dialog[answer], field).value("enabled", off), !off)
                << field << " in state " << state;
        ++state;
    }
    EXPECT_EQ(state, states().size());
}

TEST(PanelRules, NameOnlyRowsThatExist)
{
    std::set<std::string> identifiers;
    const DialogRun dialog = run({});
    for (const json& row : dialog[4]["controls"])
        identifiers.insert(row["identifier"]);
    for (const CSTRule* rule = cstColorOption; rule->type != CST_TABLE_END; ++rule) {
        EXPECT_TRUE(identifiers.contains(rule->target.identifier)) << rule->target.identifier;
        for (int i = 0; i < rule->conditionCount; ++i)
            EXPECT_TRUE(identifiers.contains(rule->conditions[i].identifier))
                << rule->conditions[i].identifier;
    }
}

TEST(PanelRules, APresetDecidesWhatIsPrintedAndSummarised)
{
    const std::vector<json> rows = advancedRows(run({})[4]);
    Lines keys, said;
    for (const json& row : rows)
        keys.push_back(row["ppdKey"]);
    for (const Setting& setting : kSettings)
        said.push_back(setting.key);
    ASSERT_EQ(keys, said) << "each row, and what each preset dictates for it";
    for (size_t preset = 0; preset < 4; ++preset)
        for (bool economy : {false, true})
            expectPreset(preset, economy, rows);
}

TEST(PanelRules, APresetLeavesOutAnItemThatThePpdLacks)
{
    Sandbox sandbox;
    auto ppd = sandbox.write("printer.ppd", withOption(samplePpd(), "VelImageHalftone",
                                                       "*OpenUI *VelImageHalftone/Image Halftone: PickOne\n"
                                                       "*DefaultVelImageHalftone: Auto\n"
                                                       "*VelImageHalftone Auto/Auto: \"\"\n"
                                                       "*CloseUI: *VelImageHalftone\n"));
    DialogRun dialog = run({"choose menu_QuickColor 2", "summary", "should-print", "job"}, ppd);
    EXPECT_FALSE(dialog[6]["values"].contains("Image Halftone"));
    EXPECT_EQ(dialog[8]["options"]["VelImageHalftone"], "Auto");
}

TEST(PanelRules, ChoicesOfOneTextStayApartFromTheMenuToTheJob)
{
    Sandbox sandbox;
    auto ppd = sandbox.write("printer.ppd", replaced(samplePpd(), "*VelTextHalftone Detail/Detail:",
                                                     "*VelTextHalftone Detail/Gradation:"));
    auto file = sandbox / "settings.plist";
    for (const auto& [item, keyword] : {std::pair(1, "Gradation"), {2, "Detail"}}) {
        std::filesystem::remove(file);
        Lines lines = {
            "open", "view",    "restore", "choose menu_QuickColor 3", choose("menu_tHalftone", item),
            "save", "summary", "job"};
        DialogRun saved = runDialog({"--ppd", ppd, "--settings", file}, lines);
        EXPECT_EQ(saved[4]["title"], "Gradation");
        EXPECT_EQ(saved[6]["values"]["Text Halftone"], "Gradation");
        EXPECT_EQ(saved[7]["options"]["VelTextHalftone"], keyword);
        DialogRun again =
            runDialog({"--ppd", ppd, "--settings", file}, {"open", "view", "restore", "controls"});
        EXPECT_EQ(controlRow(again[3], "menu_tHalftone")["value"], item);
    }
}

TEST(PresetRules, CompareAndCombineAsTheirCodesSay)
{
    const std::vector<std::pair<uint32_t, std::string>> comparisons = {
        {CST_EQUAL, "010"},         {CST_NOT_EQUAL, "101"},
        {CST_LESS, "100"},          {CST_GREATER, "001"},
        {CST_LESS_EQUAL, "110"},    {CST_EQUAL_LESS, "110"},
        {CST_GREATER_EQUAL, "011"}, {CST_EQUAL_GREATER, "011"},
        {CST_SET_VALUE, "000"},     {1008, "000"}};
    for (const auto& [code, expected] : comparisons)
        for (int value = -1; value <= 1; ++value)
            EXPECT_EQ(compareConstraintValue(value, code, 0), expected[static_cast<size_t>(value + 1)] == '1')
                << code << " " << value;
    bool slots[kConditionSlots] = {false, true};
    struct Case {
        std::vector<uint32_t> tokens;
        bool start, result;
    };
    std::vector<uint32_t> forty(38, CST_NOP), more(39, CST_NOP);
    forty.insert(forty.end(), {1, CST_OR, CST_NONE});
    more.insert(more.end(), {1, CST_OR, CST_NONE});
    for (const Case& c :
         {Case{{CST_NONE}, true, true}, Case{{0, 1, CST_OR, CST_NONE}, false, true},
          Case{{1, 0, CST_OR, CST_NONE}, false, false}, Case{{1, 0, CST_AND, CST_NONE}, true, false},
          Case{{1, CST_NOP, 1008, 4711, CST_OR, CST_NONE}, false, true},
          Case{{19, CST_OR, 20, CST_OR, 999, CST_OR, CST_NONE}, false, false}, Case{forty, false, true},
          Case{more, false, false}})
        EXPECT_EQ(evaluateExpression(c.tokens.data(), slots, c.start), c.result) << c.tokens.size();
}
