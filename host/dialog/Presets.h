#pragma once

#import <Foundation/Foundation.h>
#include <PrintingObjects.h>

/// Settings kept under a name, one file each, in a folder of $XDG_CONFIG_HOME/r4270-printdialog (~/.config
/// without that variable).
@interface Presets : NSObject
{
    NSString* folder_;
}
/// `folder` is a relative path.
- (instancetype)initWithFolder:(NSString*)folder;
/// In the order in which a menu lists them.
- (NSArray*)names;
/// A name is 1 to 100 characters, does not begin with "." and holds no "/" and no control character.
- (BOOL)acceptsName:(NSString*)name;
/// Replaces a preset of the same name. NO for a name that is not accepted and when the file cannot be
/// written.
- (BOOL)save:(NSDictionary*)values name:(NSString*)name;
/// Nil, and a reason in `error`, when there is no such preset or it cannot be read.
- (NSDictionary*)valuesOfPreset:(NSString*)name error:(NSString**)error;
- (void)removePreset:(NSString*)name;
@end
