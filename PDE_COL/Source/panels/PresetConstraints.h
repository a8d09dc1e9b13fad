#pragma once

#include "common/ControlItem.h"

// The preset rules over a control table, whose rows are found by their identifiers. A null table is empty. A
// rule whose target the table lacks does nothing; a condition on a control that it lacks is false.

/// Runs every rule, in order: disables its target when it holds, enables it again when it does not.
void vColorPresetConstraints(const PDEControlItem* table);

/// 1 when the rule holds, else 0. `rule` is an index into cstColorOption.
UInt8 bMatchCondition(SInt32 rule, const PDEControlItem* table);

/// Applies the rule's value change, if it has one.
void vValueChange(SInt32 rule, const PDEControlItem* table);

void vActOption(SInt32 rule, const PDEControlItem* table);
void vActReverseOption(SInt32 rule, const PDEControlItem* table);
