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
    [names_ release];
    [values_ release];
    [super dealloc];
}

- (void)showSummary:(NSDictionary*)summary
{
    [names_ release];
    [values_ release];
    names_ = [[summary objectForKey:@"Summary Display Order"] copy];
    values_ = [summary copy];
    [(NSTableView*)[self documentView] reloadData];
}

- (NSInteger)numberOfRowsInTableView:(NSTableView*)table
{
    return static_cast<NSInteger>([names_ count]);
}

- (id)tableView:(NSTableView*)table objectValueForTableColumn:(NSTableColumn*)tableColumn row:(NSInteger)row
{
    NSString* name = [names_ objectAtIndex:static_cast<NSUInteger>(row)];
    return [[tableColumn identifier] isEqual:@"name"] ? name : [values_ objectForKey:name];
}

@end
