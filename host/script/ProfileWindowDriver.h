#pragma once

#include "Json.h"
#include "dialog/PanelSession.h"
#include <string>

// The profile management window as a script sees it, found through the panel's `profileControl`. Every call
// but hasProfileWindow and answerNextOpenPanel needs the window; what a user does needs it open.

bool hasProfileWindow(id<PDEPanelProtocol> panel);
bool profileWindowIsOpen(id<PDEPanelProtocol> panel);

/// The answer to `window`.
Json profileWindowReport(id<PDEPanelProtocol> panel);

// What a user does in the window. A disabled control does not react. The result is "", or why it cannot be.

std::string chooseProfileList(id<PDEPanelProtocol> panel, int index);
/// Clicks a row; -1 clicks below the last.
std::string selectProfileRow(id<PDEPanelProtocol> panel, int row);
/// Clicks the check box of a row.
std::string tickProfileRow(id<PDEPanelProtocol> panel, int row);
std::string typeInto(id<PDEPanelProtocol> panel, const std::string& field, NSString* text);

/// The button behind an outlet's name, or behind "window-ok" and "window-cancel"; nil when there is none.
id profileWindowButton(id<PDEPanelProtocol> panel, const std::string& name);

/// From the first call on open panels do not appear: the next one gives `path`, those after it, and the next
/// when `path` is empty, are cancelled.
void answerNextOpenPanel(const std::string& path);
