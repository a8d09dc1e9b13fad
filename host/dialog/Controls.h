#pragma once

#import <AppKit/AppKit.h>

// The dialog's own controls, made in code. All but the window are autoreleased.

/// Not on screen yet, and kept when it is closed; the caller releases it.
NSWindow* makeWindow(NSSize size, NSString* title);
NSTextField* makeLabel(NSRect frame, NSString* text, NSTextAlignment alignment);
NSTextField* makeField(NSRect frame, NSString* text);
NSButton* makeButton(NSRect frame, NSString* title, id target, SEL action);
NSPopUpButton* makePopUp(NSRect frame, id target, SEL action);
