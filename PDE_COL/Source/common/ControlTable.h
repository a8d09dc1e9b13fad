#pragma once

#include "common/ControlItem.h"

#include <cups/ppd.h>

/// Marks a row without an option or an identifier.
inline constexpr char kNoKey[] = "";

/// The record that ends every table.
inline constexpr PDEControlItem kEndRow = {nil, PDEControlKindEnd, kNoKey, nullptr, nullptr, kNoKey};

/// Whether a walk from row 0 on goes on at row `index`. A walk ends at the first row without a control, so a
/// control that the interface file left out hides the rows behind it. A null table is empty.
inline bool hasRow(const PDEControlItem* table, SInt16 index)
{
    return table != nullptr && table[index].control != nil;
}

/// Whether the row edits an option of the PPD.
inline bool hasOption(const PDEControlItem& row)
{
    return row.ppdKey[0] != '\0';
}

/// The choices of the row's option in the PPD's order, each an array of strings; empty without any.
inline NSArray* choicesOf(const PDEControlItem& row)
{
    return (NSArray*)row.choices;
}

/// A new table with a copy of `count` rows, the end row included, and the choices of each row's option.
/// Null when memory is short. `ppd` may be null.
PDEControlItem* createControlTable(const PDEControlItem* rows, SInt16 count, ppd_file_t* ppd);

/// Frees a table of createControlTable and its choices; null is ignored.
void freeControlTable(PDEControlItem* table);

/// Adds the key of every row to the array, "" where a row has none.
void addAllKeys(NSMutableArray* array, const PDEControlItem* table);
