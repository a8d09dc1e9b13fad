#include "panels/PresetRules.h"

namespace {

constexpr CSTCondition kGrayscale = {"ColorAsGrayCheckBox", "Checked", 1, CST_EQUAL};
constexpr CSTCondition kEconomy = {"EconoModeCheckBox", "Checked", 1, CST_EQUAL};
constexpr CSTCondition kEdgeOff = {"EdgeTypePopup", "Off", 1, CST_EQUAL};

constexpr CSTCondition kNotCustom[] = {{"QuickColorPopup", "Custom", 4, CST_NOT_EQUAL}};
constexpr CSTCondition kGray[] = {kGrayscale};
constexpr CSTCondition kImageIntent[] = {kGrayscale, {"ImageRGBSourcePopup", "None", 1, CST_EQUAL}};
constexpr CSTCondition kImageGray[] = {kGrayscale,
                                       {"ImageDestinationProfilePopup", "Auto", 1, CST_NOT_EQUAL}};
constexpr CSTCondition kTextIntent[] = {kGrayscale, {"TextRGBSourcePopup", "None", 1, CST_EQUAL}};
constexpr CSTCondition kTextGray[] = {kGrayscale, {"TextDestinationProfilePopup", "Auto", 1, CST_NOT_EQUAL}};
constexpr CSTCondition kGraphicsIntent[] = {kGrayscale, {"GraphicsRGBSourcePopup", "None", 1, CST_EQUAL}};
constexpr CSTCondition kGraphicsGray[] = {kGrayscale,
                                          {"GraphicsDestinationProfilePopup", "Auto", 1, CST_NOT_EQUAL}};
constexpr CSTCondition kSimulation[] = {kGrayscale, {"SimulationSourcePopup", "None", 1, CST_EQUAL}};
constexpr CSTCondition kEdge[] = {kEconomy, kEdgeOff};
constexpr CSTCondition kTextEdge[] = {kEdgeOff};

constexpr uint32_t kFirst[] = {CST_NONE};
constexpr uint32_t kEither[] = {0, 1, CST_OR, CST_NONE};

constexpr CSTAction kDisable[] = {{CST_DISABLE, 0}};

constexpr CSTTarget targetNamed(const char* identifier, int32_t value)
{
    CSTTarget target = {{}, value, CST_NONE};
    for (int i = 0; identifier[i] != '\0'; ++i)
        target.identifier[i] = identifier[i];
    return target;
}

template <size_t Count>
constexpr CSTRule rule(const char* identifier, const CSTCondition (&conditions)[Count],
                       const uint32_t* expression, uint32_t expressionLength, int32_t value = -1)
{
    return {CST_RULE,
            static_cast<int8_t>(Count),
            conditions,
            expressionLength,
            expression,
            targetNamed(identifier, value),
            targetNamed(identifier, value),
            1,
            kDisable};
}

} // namespace

const CSTRule cstColorOption[] = {
    rule("GoToAdvancedOptionsButton", kNotCustom, kFirst, 0),
    rule("ImageRGBSourcePopup", kGray, kFirst, 0),
    rule("ImageRenderIntentPopup", kImageIntent, kEither, 3),
    rule("ImageGrayTreatmentPopup", kImageGray, kEither, 3),
    rule("ImageDestinationProfilePopup", kGray, kFirst, 0),
    rule("TextRGBSourcePopup", kGray, kFirst, 0),
    rule("TextRenderIntentPopup", kTextIntent, kEither, 3),
    rule("TextGrayTreatmentPopup", kTextGray, kEither, 3),
    rule("TextDestinationProfilePopup", kGray, kFirst, 0),
    rule("GraphicsRGBSourcePopup", kGray, kFirst, 0),
    rule("GraphicsRenderIntentPopup", kGraphicsIntent, kEither, 3),
    rule("GraphicsGrayTreatmentPopup", kGraphicsGray, kEither, 3),
    rule("GraphicsDestinationProfilePopup", kGray, kFirst, 0),
    rule("SimulationSourcePopup", kGray, kFirst, 0),
    rule("SimulationRenderIntentPopup", kSimulation, kEither, 3),
    rule("SimulationGrayTreatmentPopup", kSimulation, kEither, 3),
    rule("ImageEdgeEnhancePopup", kEdge, kEither, 3),
    // One condition under an expression for two: the second slot is set by none and stays false, so that
    // economy mode never touches the edges of text.
    rule("TextEdgeEnhancePopup", kTextEdge, kEither, 0, 0),
    rule("GraphicsEdgeEnhancePopup", kEdge, kEither, 3),
    {CST_TABLE_END, 0, nullptr, 0, nullptr, {}, {}, 0, nullptr},
};

bool compareConstraintValue(int32_t value, uint32_t comparison, int32_t wanted)
{
    switch (comparison) {
    case CST_EQUAL:
        return value == wanted;
    case CST_NOT_EQUAL:
        return value != wanted;
    case CST_LESS:
        return value < wanted;
    case CST_GREATER:
        return value > wanted;
    case CST_LESS_EQUAL:
    case CST_EQUAL_LESS:
        return value <= wanted;
    case CST_GREATER_EQUAL:
    case CST_EQUAL_GREATER:
        return value >= wanted;
    default:
        return false;
    }
}

bool evaluateExpression(const uint32_t* expression, const bool (&slots)[kConditionSlots], bool accumulator)
{
    bool operand = false;
    for (int i = 0; i < kMaxTokens && expression[i] != CST_NONE; ++i) {
        uint32_t token = expression[i];
        if (token < CST_NOP)
            operand = token < kConditionSlots && slots[token];
        else if (token == CST_AND)
            accumulator = accumulator && operand;
        else if (token == CST_OR)
            accumulator = accumulator || operand;
    }
    return accumulator;
}
