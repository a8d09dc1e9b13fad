#pragma once

#import <AppKit/AppKit.h>

/// Asks for a name in a modal window. Nil when the user cancels or leaves it empty.
NSString* promptForName(NSString* question, NSString* proposal);
