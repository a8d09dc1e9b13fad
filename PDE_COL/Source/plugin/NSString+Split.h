#pragma once

#import <Cocoa/Cocoa.h>

@interface NSString (Split)

/// Pieces of `count` characters (UTF-16 units), in order; the last may be shorter. A string of at most
/// `count` characters is its own only piece. `count` is above 0.
- (NSArray*)splitCharEvery:(unsigned int)count;

@end
