#pragma once

#include "Json.h"
#include "dialog/DialogController.h"
#include <string>

/// Carries out one script line and gives its answer; an object with "error" when it cannot. A toolkit
/// exception in it becomes such an answer too.
Json runScriptLine(DialogController* dialog, const std::string& line);

/// The answer to a line that opened a modal window and has not come back from it.
Json answerOfOpenLine(DialogController* dialog, const std::string& line);

/// True while a modal window is open that answers to the user.
bool modalWindowIsOpen();

/// A modal loop looks at what was done to it only when an event arrives: gives it one.
void wakeModalLoop();
