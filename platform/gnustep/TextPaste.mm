// Pasting into a field, as on macOS: the toolkit moves the caret once more after the text has been told of
// the change, which undoes what a field that checks its text has said of the caret.

#import <AppKit/AppKit.h>

// This category is here to take the toolkit's method's place.
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSTextView (TextPaste)

- (void)paste:(id)sender
{
    NSPasteboard* board = [NSPasteboard generalPasteboard];
    NSString* text = [self isFieldEditor] ? [board stringForType:NSStringPboardType] : nil;
    if (text != nil)
        [self insertText:text];
    else
        [self readSelectionFromPasteboard:board];
}

@end
