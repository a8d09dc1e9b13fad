#include "profilewindow/ProfileTableView.h"

@implementation ProfileTableView

- (void)keyDown:(NSEvent*)event
{
    if (![[event charactersIgnoringModifiers] isEqualToString:@" "]) {
        [super keyDown:event];
        return;
    }
    NSInteger row = [self selectedRow];
    // A click ticks nothing while an edit holds the selection.
    if (row < 0 || ![[self delegate] selectionShouldChangeInTableView:self])
        return;
    NSTableColumn* column = [self tableColumnWithIdentifier:@"inmenu"];
    id<NSTableViewDataSource> source = [self dataSource];
    bool ticked = [[source tableView:self objectValueForTableColumn:column row:row] intValue] != 0;
    [source tableView:self setObjectValue:[NSNumber numberWithInt:!ticked] forTableColumn:column row:row];
    [self reloadData];
}

@end
