#pragma once

#import <AppKit/AppKit.h>

/// Gives every control the look of a program of today, in a light or a dark palette. Once, after the
/// application object is made and before the first window.
void useTheme(BOOL dark);
