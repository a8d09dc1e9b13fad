#pragma once

#import <AppKit/AppKit.h>

/// Fills and outlines `frame` with rounded corners; either colour may be nil. The outline is `width` units
/// wide and lies inside.
void drawRounded(NSRect frame, CGFloat radius, NSColor* fill, NSColor* outline, CGFloat width = 1);

enum class Arrow { Up, Down, Left, Right };

/// An arrow head in the middle of `frame`, in the current colour.
void drawArrow(NSRect frame, Arrow direction, BOOL flipped);

/// Puts the theme's palette into the toolkit's system colours.
void setSystemColors(BOOL dark);

/// Puts the theme's own drawings in place of the toolkit's images: ticks, arrows, the program's icon.
void setSystemImages();
