#include "profilewindow/IconedCell.h"

@implementation IconedCell

- (void)drawInteriorWithFrame:(NSRect)cellFrame inView:(NSView*)controlView
{
    static const CGFloat kIconSize = 16;
    static const CGFloat kIconInset = 3;
    NSImage* image = [self image];
    if (image == nil)
        return;
    [image setScalesWhenResized:YES];
    [image setSize:NSMakeSize(kIconSize, kIconSize)];
    NSPoint origin = NSMakePoint(NSMinX(cellFrame) + kIconInset, NSMinY(cellFrame));
    if ([controlView isFlipped])
        origin.y += kIconSize;
    [image compositeToPoint:origin operation:NSCompositeSourceOver];
}

@end
