#include "SummaryView.h"

#include "Text.h"

static NSTableColumn* column(NSString* identifier, NSString* title, CGFloat width)
{
    NSTableColumn* result = [[[NSTableColumn alloc] initWithIdentifier:identifier] autorelease];
    [[result headerCell] setStringValue:title];
    [result setWidth:width];
    [result setEditable:NO];
    return result;
}

@implementation SummaryView

- (instancetype)initWithFrame:(NSRect)frame
{
    self = [super initWithFrame:frame];
    [self setHasVerticalScroller:YES];
    [self setBorderType:NSBezelBorder];
    NSTableView* table = [[[NSTableView alloc] initWithFrame:frame] autorelease];
    [table addTableColumn:column(@"name", localized(@"Setting"), NSWidth(frame) / 2)];
    [table addTableColumn:column(@"value", localized(@"Value"), NSWidth(frame) / 2 - 24)];
    [table setDataSource:(id)self];
    [table setAllowsColumnReordering:NO];
    [table setRowHeight:18];
    [self setDocumentView:table];
    [table sizeLastColumnToFit];
    return self;
}

- (void)dealloc
{
    [(NSTableView*)[self documentView] setDataSource:nil];
    [rows_ release];
    [super dealloc];
}

- (void)showRows:(NSArray*)rows
{
    [rows_ release];
    rows_ = [rows copy];
    [(NSTableView*)[self documentView] reloadData];
}

- (NSInteger)numberOfRowsInTableView:(NSTableView*)table
{
    return static_cast<NSInteger>([rows_ count]);
}

- (id)tableView:(NSTableView*)table objectValueForTableColumn:(NSTableColumn*)tableColumn row:(NSInteger)row
{
    NSArray* nameAndValue = [rows_ objectAtIndex:static_cast<NSUInteger>(row)];
    return [nameAndValue objectAtIndex:[[tableColumn identifier] isEqual:@"name"] ? 0 : 1];
}

@end
