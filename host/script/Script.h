#pragma once

#include "dialog/DialogController.h"
#include <string>

// What the program knows of scripts. An installed build has none: there a line of text could drive the
// plug-in's controls and answer its open panel in the user's place.

/// A descriptor of the script's lines, "-" for standard input; -1, and why on standard error, when they
/// cannot be had.
int openScript(const std::string& file);

/// Drives the dialog by these lines, from the application's run loop, and goes on while a modal window is
/// open. At their end the panel is closed, the settings are written and the process exits: with 1 when an
/// answer was an error.
void driveByScript(DialogController* dialog, int script);
