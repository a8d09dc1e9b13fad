#pragma once

#include "common/ProfileKind.h"

#include <span>
#include <string_view>
#include <vector>

/// A setting of the advanced view: a pop-up with a label in front of it.
struct AdvancedSetting {
    const char* outlet; ///< the view's outlets are named "menu_" and "text_" with this behind
    const char* ppdKey;
    const char* caption;     ///< localisation key of the label
    const char* summaryName; ///< localisation key of the row in the summary
    const char* identifier;  ///< name for the preset rules, "" for none
    ProfileKind profiles;
    int item0, item1, item2; ///< index in the pop-up of what each Quick Color preset dictates
};

/// In the order of the control table.
std::span<const AdvancedSetting> advancedSettings();

struct DictatedItem {
    std::string_view ppdKey;
    int item; ///< index in the setting's pop-up
};

/// What a Quick Color preset dictates, in the order in which it is applied: with economy mode a later entry
/// can replace an earlier one. Nothing for "Custom" and for an index that is no preset.
std::vector<DictatedItem> dictatedItems(int preset, bool economy);
