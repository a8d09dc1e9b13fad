#include "Screenshot.h"

BOOL writeScreenshot(NSWindow* window, NSString* path)
{
    NSView* content = [window contentView];
    [window orderFrontRegardless];
    [window display];
    if (content == nil || ![content canDraw])
        return NO;
    [content lockFocus];
    NSBitmapImageRep* image =
        [[[NSBitmapImageRep alloc] initWithFocusedViewRect:[content bounds]] autorelease];
    [content unlockFocus];
    NSData* png = [image representationUsingType:NSPNGFileType properties:[NSDictionary dictionary]];
    return png != nil && [png writeToFile:path atomically:YES];
}
