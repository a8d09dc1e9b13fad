#pragma once

#include "DialogController.h"
#include <string>

/// Drives the dialog by the lines of a file, from the application's run loop, and goes on while a modal
/// window is open. At the end of the file the panel is closed, the settings are written and the process
/// exits: with 1 when an answer was an error.
@interface ScriptRunner : NSObject
{
    DialogController* dialog_;
    int file_;
    bool atEnd_;
    std::string unread_;    ///< bytes that are not yet a whole line
    std::string open_;      ///< the line that is being carried out and is not answered yet
    NSWindow* modalBefore_; ///< the modal window when that line began
    int depth_;             ///< lines that are being carried out, one inside the modal loop of another
    bool failed_;
}
/// `file` is a descriptor.
- (instancetype)initWithDialog:(DialogController*)dialog file:(int)file;
- (void)start;
@end
