#include "profilewindow/IconedCell.h"

@implementation IconedCell

- (void)drawInteriorWithFrame:(NSRect)cellFrame inView:(NSView*)controlView
{
    static const CGFloat kIconSize = 16;
    static const CGFloat kIconInset = 3;
    [[self image]
            drawInRect:NSMakeRect(NSMinX(cellFrame) + kIconInset, NSMinY(cellFrame), kIconSize, kIconSize)
              fromRect:NSZeroRect
             operation:NSCompositeSourceOver
              fraction:1
        respectFlipped:YES
                 hints:nil];
}

@end
