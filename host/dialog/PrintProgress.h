#pragma once

#import <AppKit/AppKit.h>
#include <string>

/// The window that shows how a job goes out and what becomes of it.
@interface PrintProgress : NSObject
{
    NSWindow* window_;
    NSTextField* text_;
    NSProgressIndicator* bar_;
    NSButton* close_;
    NSTimer* timer_;
    std::string queue_;
    int job_;
}
- (instancetype)initWithQueue:(const std::string&)queue title:(NSString*)title;
/// Shows the job's number and state until the user closes the window.
- (void)followJob:(int)job;
@end
