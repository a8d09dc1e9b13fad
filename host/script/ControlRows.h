#pragma once

#include "Json.h"
#include "dialog/PanelSession.h"
#include <common/ControlItem.h>
#include <optional>
#include <string>
#include <vector>

// The panel's controls as a script sees them: the rows of both views' control tables.

struct ControlRow {
    NSView* view;               ///< the view whose table it is
    const PDEControlItem* item; ///< the table's own
    std::string field;          ///< the outlet's name in the view
};

/// Both tables, Color Options first; empty while the panel is not loaded.
std::vector<ControlRow> controlRows(id<PDEPanelProtocol> panel);
std::optional<ControlRow> controlRow(id<PDEPanelProtocol> panel, const std::string& field);

Json reportOf(const ControlRow& row);

/// "ColorOptions", "AdvancedColorOptions", or "" when neither view is shown.
std::string shownView(id<PDEPanelProtocol> panel);

// What a user does to a control. A disabled control does not react. The result is "", or why it cannot be.

std::string chooseItem(id control, int index);
std::string setCheckBox(id control, int state);
std::string pressButton(id control, int ignored);
std::string selectTab(id control, int index);
