#pragma once

#import <AppKit/AppKit.h>

/// Brings the window to the front, draws it and writes what is in it as PNG. NO when that fails.
BOOL writeScreenshot(NSWindow* window, NSString* path);
