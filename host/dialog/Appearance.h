#pragma once

#include <string>

/// Gives the toolkit the manners of a desktop program: no application icon window, lists that open on a
/// click, the desktop's scale. Before the application object is made.
void registerAppearance();

/// Gives it the look: "light", "dark", or "" for what the desktop wants. After that.
void applyAppearance(const std::string& wanted);
