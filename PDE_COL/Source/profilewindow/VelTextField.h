#pragma once

#import <Cocoa/Cocoa.h>
#import <CoreFoundation/CoreFoundation.h>

#include "common/ClassNames.h"

/// A text field for a name. Every change, typed, pasted or deleted, is checked as it is made: a change that
/// makes the name too long, or gives it a second full stop, is taken back; other refused characters drop out
/// one by one. One control can follow the field: it is enabled while the text is a usable name, that is,
/// neither empty nor beginning with a full stop.
@interface VelTextField : NSTextField
{
    IBOutlet NSControl* operateOutlet;
    SInt32 inputkey;
    SInt32 maxLen;
    SInt32 maxExtension;
    NSString* oldValue;
    NSText* textObj;
}

/// Longest text, and longest part after the first full stop, in UTF-16 units. `extension` 0 or less: the
/// full stop is a character like any other. Otherwise a text without one leaves room for it and the
/// extension.
- (void)setMaxLength:(SInt32)length extension:(SInt32)extension;

/// The characters let through, an InputKey.
- (void)setInputKey:(SInt32)key;

/// `control`, which may be nil, is not owned.
- (void)setOperateControl:(NSControl*)control;

/// The text that a refused change is taken back to. Whoever sets the field's text says so here, too.
- (void)setOldString:(NSString*)string;

@end
