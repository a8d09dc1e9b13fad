#pragma once

#import <AppKit/AppKit.h>
#include <string>

/// Shows what becomes of a job, in a modal window in which the user can cancel it, until the user closes it.
/// `pages` is how many the job comes to, 0 when that is not known.
void followJob(const std::string& queue, int job, NSString* title, int pages);
