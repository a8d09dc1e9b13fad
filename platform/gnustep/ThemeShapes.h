#pragma once

#import <AppKit/AppKit.h>

// What the theme's parts share: a shape and a few colours that the toolkit has no name for.

/// Fills and outlines `frame` with rounded corners; either colour may be nil. The outline is one unit wide
/// and lies inside.
void drawRounded(NSRect frame, CGFloat radius, NSColor* fill, NSColor* outline);

/// Strokes lines through `points`, given as parts (0 to 1) of `frame`, in the current colour.
void strokeThrough(NSRect frame, const NSPoint* points, int count, CGFloat width);

NSColor* accentColor();
NSColor* outlineColor();

/// Puts the theme's palette into the toolkit's system colours.
void setSystemColors(BOOL dark);

/// Puts the theme's own drawings in place of the toolkit's images: ticks, arrows, the program's icon.
void setSystemImages();

/// Runs a pop-up's list, which is on screen, until the user closes it; `selected` is highlighted first, -1
/// for none. The index of the chosen item, or -1.
NSInteger runList(NSMenuView* view, NSInteger selected);
