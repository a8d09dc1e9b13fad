#pragma once

/// Gives the toolkit the look of a desktop program: no application icon window, scrollers at the right, a
/// light background. Before the application object is made.
void registerAppearance();

/// The part that needs the application object.
void applyColors();
