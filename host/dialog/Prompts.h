#pragma once

#import <AppKit/AppKit.h>

/// Asks for a name in a modal window. Nil when the user cancels or leaves it empty.
NSString* promptForName(NSString* question, NSString* proposal);

/// Shows rows of a name and a value in a modal window.
void showTable(NSString* heading, NSArray* rows);
