#pragma once

// What the user's desktop asks of a program.

/// How much larger than a screen of 96 dots an inch everything is to be, 1 to 4; by the X server's `Xft.dpi`.
double desktopScale();

/// True when the desktop's programs are to be dark: by `GTK_THEME`, else by the settings that desktops share.
bool desktopIsDark();

/// Makes the first language of the user's list that the dialog has the only one, English if there is none, so
/// that dialog, panel, PPD and toolkit never speak different ones. Before the toolkit reads the environment.
void settleLanguage();
