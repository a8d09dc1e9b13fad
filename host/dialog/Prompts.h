#pragma once

#import <AppKit/AppKit.h>

/// Asks for a name in a modal window. Nil when the user cancels or leaves it empty.
NSString* promptForName(NSString* question, NSString* proposal);

/// Shows names and values, laid out as a panel's summary is, in a modal window.
void showTable(NSString* heading, NSDictionary* table);
