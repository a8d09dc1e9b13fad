#include "panels/PresetConstraints.h"

#include "common/PDECommon+ControlTable.h"
#include "panels/PresetRules.h"

#include <algorithm>
#include <cstring>

// A linear search, which is meant: the tables are short. The end row is looked at, never compared.
static const PDEControlItem* rowNamed(const char* identifier, const PDEControlItem* table)
{
    if (table == nullptr)
        return nullptr;
    for (const PDEControlItem* row = table; row->kind != PDEControlKindEnd; ++row) {
        if (strcmp(row->identifier, identifier) == 0)
            return row;
    }
    return nullptr;
}

static bool conditionHolds(const CSTCondition& condition, const PDEControlItem* table)
{
    const PDEControlItem* row = rowNamed(condition.identifier, table);
    if (row == nullptr)
        return false;
    int value = [PDECommon commonConvertToCSTValue:row
                                          convalue:[PDECommon commonGetControlValueWithSInt32:row]];
    return compareConstraintValue(value, condition.comparison, condition.value);
}

static void act(SInt32 rule, const PDEControlItem* table, BOOL enabled)
{
    for (int i = 0; i < cstColorOption[rule].actionCount; ++i) {
        const PDEControlItem* row = rowNamed(cstColorOption[rule].target.identifier, table);
        if (row != nullptr && cstColorOption[rule].actions[i].code == CST_DISABLE)
            [row->control setEnabled:enabled];
    }
}

void vColorPresetConstraints(const PDEControlItem* table)
{
    for (SInt32 i = 0; cstColorOption[i].type != CST_TABLE_END; ++i) {
        if (bMatchCondition(i, table) != 0) {
            vValueChange(i, table);
            vActOption(i, table);
        } else {
            vActReverseOption(i, table);
        }
    }
}

UInt8 bMatchCondition(SInt32 rule, const PDEControlItem* table)
{
    bool slots[kConditionSlots] = {};
    int count = std::min<int>(cstColorOption[rule].conditionCount, kConditionSlots);
    for (int i = 0; i < count; ++i)
        slots[i] = conditionHolds(cstColorOption[rule].conditions[i], table);
    return evaluateExpression(cstColorOption[rule].expression, slots, slots[0]) ? 1 : 0;
}

void vValueChange(SInt32 rule, const PDEControlItem* table)
{
    const PDEControlItem* row = rowNamed(cstColorOption[rule].target.identifier, table);
    const CSTTarget& change = cstColorOption[rule].valueTarget;
    if (row == nullptr || change.operation != CST_SET_VALUE)
        return;
    [PDECommon commonSetControlValueWithSInt32:row
                                         value:[PDECommon commonConvertFromCSTValue:row
                                                                           convalue:change.value]];
}

void vActOption(SInt32 rule, const PDEControlItem* table)
{
    act(rule, table, NO);
}

void vActReverseOption(SInt32 rule, const PDEControlItem* table)
{
    act(rule, table, YES);
}
