#include "panels/PresetRules.h"
#include "support/PanelHarness.h"

#include <gtest/gtest.h>
#include <vector>

TEST(PresetExpression, CombinesTheAccumulatorWithTheOperandLoadedLast)
{
    bool slots[kConditionSlots] = {false, true};
    auto value = [&](std::vector<uint32_t> tokens, bool start) {
        return evaluateExpression(tokens.data(), slots, start);
    };
    EXPECT_TRUE(value({CST_NONE}, true));
    EXPECT_TRUE(value({0, 1, CST_OR, CST_NONE}, false));
    EXPECT_FALSE(value({1, 0, CST_OR, CST_NONE}, false));
    EXPECT_FALSE(value({1, 0, CST_AND, CST_NONE}, true));
    EXPECT_TRUE(value({1, CST_NOP, 1008, 4711, CST_OR, CST_NONE}, false));
    EXPECT_FALSE(value({19, CST_OR, 20, CST_OR, 999, CST_OR, CST_NONE}, false));
}

TEST(PresetExpression, ReadsAtMostFortyTokens)
{
    bool slots[kConditionSlots] = {true};
    std::vector<uint32_t> tokens(38, CST_NOP);
    tokens.insert(tokens.end(), {0, CST_OR, CST_NONE});
    EXPECT_TRUE(evaluateExpression(tokens.data(), slots, false));
    tokens.insert(tokens.begin(), CST_NOP);
    EXPECT_FALSE(evaluateExpression(tokens.data(), slots, false));
}

TEST(PresetCondition, ComparesSigned)
{
    struct Case {
        uint32_t comparison;
        bool below, same, above;
    };
    for (const Case& c : std::vector<Case>{{CST_EQUAL, false, true, false},
                                           {CST_NOT_EQUAL, true, false, true},
                                           {CST_LESS, true, false, false},
                                           {CST_GREATER, false, false, true},
                                           {CST_LESS_EQUAL, true, true, false},
                                           {CST_EQUAL_LESS, true, true, false},
                                           {CST_GREATER_EQUAL, false, true, true},
                                           {CST_EQUAL_GREATER, false, true, true},
                                           {CST_SET_VALUE, false, false, false},
                                           {1008, false, false, false}}) {
        EXPECT_EQ(compareConstraintValue(-1, c.comparison, 0), c.below) << c.comparison;
        EXPECT_EQ(compareConstraintValue(0, c.comparison, 0), c.same) << c.comparison;
        EXPECT_EQ(compareConstraintValue(1, c.comparison, 0), c.above) << c.comparison;
    }
}

namespace {

// One reachable state of the controls that decide.
struct State {
    int quickColor, edgeType;
    bool gray, economy;
    int source[3], destination[3], simulation;
};

// The rules as a user would say them: what is disabled when.
struct Expectation {
    const char* outlet;
    bool disabled;
};

std::vector<Expectation> disabledControls(const State& s)
{
    std::vector<Expectation> result = {
        {"button_AdvanceColorOptions", s.quickColor != 3},
        {"menu_sSimulationProfile", s.gray},
        {"menu_sMatchPaperColor", s.gray || s.simulation == 0},
        {"menu_sCMYKGrayTreatment", s.gray || s.simulation == 0},
        {"menu_iEdgeEnhancement", s.economy || s.edgeType == 0},
        {"menu_tEdgeEnhancement", s.edgeType == 0},
        {"menu_gEdgeEnhancement", s.economy || s.edgeType == 0},
        {"menu_iHalftone", false},
        {"menu_tHalftone", false},
        {"menu_gHalftone", false},
    };
    const char* names[3][4] = {
        {"menu_iRGBSource", "menu_iRGBIntent", "menu_iRGBGrayTreatment", "menu_iDestinationProfile"},
        {"menu_tRGBSource", "menu_tRGBIntent", "menu_tRGBGrayTreatment", "menu_tDestinationProfile"},
        {"menu_gRGBSource", "menu_gRGBIntent", "menu_gRGBGrayTreatment", "menu_gDestinationProfile"},
    };
    for (int i = 0; i < 3; ++i) {
        result.push_back({names[i][0], s.gray});
        result.push_back({names[i][1], s.gray || s.source[i] == 0});
        result.push_back({names[i][2], s.gray || s.destination[i] != 0});
        result.push_back({names[i][3], s.gray});
    }
    return result;
}

void reach(const PanelHarness& panel, const State& s)
{
    panel.check("check_ColorAsGrayscale", s.gray);
    panel.check("check_EconomyPrint", s.economy);
    panel.choose("menu_EdgeStrength", s.edgeType);
    panel.choose("menu_iRGBSource", s.source[0]);
    panel.choose("menu_tRGBSource", s.source[1]);
    panel.choose("menu_gRGBSource", s.source[2]);
    panel.choose("menu_iDestinationProfile", s.destination[0]);
    panel.choose("menu_tDestinationProfile", s.destination[1]);
    panel.choose("menu_gDestinationProfile", s.destination[2]);
    panel.choose("menu_sSimulationProfile", s.simulation);
    panel.choose("menu_QuickColor", s.quickColor);
}

} // namespace

TEST(PresetConstraints, DisableInEveryReachableStateWhatTheRulesSay)
{
    PanelHarness panel;
    [panel.panel() restoreValuesAndReturnError:nullptr];
    for (int i = 0; i < 4096; ++i) {
        auto bit = [i](int n) { return i >> n & 1; };
        State state = {i & 3,
                       bit(2) * 2,
                       bit(3) == 1,
                       bit(4) == 1,
                       {bit(5), bit(6) * 3, bit(7)},
                       {bit(8), bit(9) * 2, bit(10) * 3},
                       bit(11)};
        reach(panel, state);
        for (const Expectation& expected : disabledControls(state))
            ASSERT_EQ(panel.enabled(expected.outlet), !expected.disabled)
                << expected.outlet << " in state " << i;
    }
}

TEST(PresetConstraints, DisableTheAdvancedButtonWithoutASelection)
{
    PanelHarness panel;
    [panel.panel() restoreValuesAndReturnError:nullptr];
    panel.choose("menu_QuickColor", 3);
    EXPECT_TRUE(panel.enabled("button_AdvanceColorOptions"));
    panel.choose("menu_QuickColor", -1);
    EXPECT_FALSE(panel.enabled("button_AdvanceColorOptions"));
}

TEST(PresetConstraints, TouchOnlyTheirOwnViewWhenQuickColorChanges)
{
    PanelHarness panel;
    [panel.panel() restoreValuesAndReturnError:nullptr];
    // Changed behind the rules' back: the action of Quick Color must not notice.
    [panel.outlet("check_ColorAsGrayscale") setIntValue:1];
    panel.choose("menu_QuickColor", 3);
    EXPECT_TRUE(panel.enabled("button_AdvanceColorOptions"));
    EXPECT_TRUE(panel.enabled("menu_iRGBSource"));
}
