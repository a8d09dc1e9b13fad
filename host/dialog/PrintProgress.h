#pragma once

#import <AppKit/AppKit.h>
#include <string>

/// Shows what becomes of a job, in a modal window in which the user can cancel it, until the user closes it.
void followJob(const std::string& queue, int job, NSString* title);
