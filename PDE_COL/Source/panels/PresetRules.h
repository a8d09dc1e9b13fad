#pragma once

#include <cstddef>
#include <cstdint>

// Which controls may be used depends on others: each rule of a static table disables one control while its
// conditions hold. Tables and rules in plain C++; what touches controls is in PresetConstraints.

enum : uint32_t {
    CST_NOP = 1000,
    CST_AND = 1003,
    CST_OR = 1004,
    CST_EQUAL = 1005,
    CST_NOT_EQUAL = 1006,
    CST_SET_VALUE = 1007,
    CST_LESS = 1009,
    CST_GREATER = 1010,
    CST_LESS_EQUAL = 1011,
    CST_EQUAL_LESS = 1012, ///< the same test as CST_LESS_EQUAL
    CST_GREATER_EQUAL = 1013,
    CST_EQUAL_GREATER = 1014, ///< the same test as CST_GREATER_EQUAL
    CST_NONE = 1017,
    CST_TABLE_END = 1019,
    CST_RULE = 1022,
    CST_DISABLE = 1027,
};

/// Result slots of one rule's conditions, and the tokens of an expression that are read at the most.
inline constexpr int kConditionSlots = 20;
inline constexpr int kMaxTokens = 40;

/// A test of one control's constraint value: a pop-up's selected index + 1 (0 for none), a check box's value.
struct CSTCondition {
    char identifier[32];
    char choiceName[32]; ///< what `value` stands for; never read
    int32_t value;
    uint32_t comparison; ///< CST_EQUAL ... CST_EQUAL_GREATER; any other is never true
};

struct CSTTarget {
    char identifier[64];
    int32_t value;
    uint32_t operation; ///< CST_SET_VALUE or CST_NONE
};

struct CSTAction {
    uint32_t code;
    uint32_t reserved;
};

struct CSTRule {
    uint32_t type; ///< CST_RULE; CST_TABLE_END in the record behind the last rule
    int8_t conditionCount;
    const CSTCondition* conditions;
    uint32_t expressionLength;  ///< informational, never read
    const uint32_t* expression; ///< ends with CST_NONE
    CSTTarget target;           ///< names the control; its value and operation are not read
    CSTTarget valueTarget;      ///< gives value and operation; its identifier is not read
    int8_t actionCount;
    const CSTAction* actions;
};

/// The rules and the end record.
extern const CSTRule cstColorOption[];

/// Whether `value` stands in the relation to `wanted`.
bool compareConstraintValue(int32_t value, uint32_t comparison, int32_t wanted);

/// Combines condition results: a token up to 999 loads that slot as the operand, CST_AND and CST_OR combine
/// it with the accumulator, CST_NONE ends, any other token has no effect. Slots outside the array are false.
bool evaluateExpression(const uint32_t* expression, const bool (&slots)[kConditionSlots], bool accumulator);
