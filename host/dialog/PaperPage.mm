#include "PaperPage.h"

#include "Controls.h"
#include "Text.h"

#include <cstring>

static const CGFloat kRow = 30, kHeading = 24, kIndent = 20;

static NSString* textOrKeyword(const char* text, const char* keyword)
{
    NSString* result = [NSString stringWithUTF8String:text];
    return [result length] > 0 ? result : [NSString stringWithUTF8String:keyword];
}

/// One option: a title and a pop-up whose items carry the choices' keywords.
@interface PaperRow : NSObject
{
@public
    NSString* keyword;
    NSString* title;
    NSString* group;
    NSString* standard; ///< the choice keyword that holds when nothing is chosen
    NSPopUpButton* popUp;
}
@end

@implementation PaperRow

- (instancetype)initWithKeyword:(NSString*)itsKeyword title:(NSString*)itsTitle group:(NSString*)itsGroup
{
    self = [super init];
    keyword = [itsKeyword copy];
    title = [itsTitle copy];
    group = [itsGroup copy];
    popUp = [makePopUp(NSMakeRect(0, 0, 260, 24), nil, nullptr) retain];
    return self;
}

- (void)dealloc
{
    [keyword release];
    [title release];
    [group release];
    [standard release];
    [popUp release];
    [super dealloc];
}

/// Straight into the menu: the pop-up keeps one item for a title, and two choices may be called alike.
- (void)addChoice:(NSString*)choice title:(NSString*)itsTitle
{
    [[[popUp menu] addItemWithTitle:itsTitle action:nullptr keyEquivalent:@""] setRepresentedObject:choice];
}

- (void)select:(NSString*)choice
{
    NSInteger index = choice != nil ? [popUp indexOfItemWithRepresentedObject:choice] : -1;
    [popUp selectItemAtIndex:index >= 0 ? index : [popUp indexOfItemWithRepresentedObject:standard]];
}

@end

@implementation PaperPage

- (PaperRow*)addRow:(NSString*)keyword title:(NSString*)title group:(NSString*)group
{
    PaperRow* row = [[[PaperRow alloc] initWithKeyword:keyword title:title group:group] autorelease];
    [row->popUp setTag:static_cast<NSInteger>([rows_ count])];
    [row->popUp setTarget:self];
    [row->popUp setAction:@selector(choose:)];
    [rows_ addObject:row];
    return row;
}

/// Sizes typed in by the user are not offered, nor is what the other keyword of a paper size stands for.
- (void)addGroup:(const ppd_group_t&)group claimed:(NSArray*)claimed
{
    if (strcmp(group.name, "InstallableOptions") == 0)
        return;
    for (int i = 0; i < group.num_options; ++i) {
        const ppd_option_t& option = group.options[i];
        NSString* keyword = [NSString stringWithUTF8String:option.keyword];
        if (option.ui == PPD_UI_PICKMANY || [keyword isEqual:@"PageRegion"] ||
            [claimed containsObject:keyword])
            continue;
        PaperRow* row = [self addRow:keyword
                               title:textOrKeyword(option.text, option.keyword)
                               group:textOrKeyword(group.text, group.name)];
        row->standard = [[NSString stringWithUTF8String:option.defchoice] retain];
        for (int c = 0; c < option.num_choices; ++c)
            if (strcmp(option.choices[c].choice, "Custom") != 0)
                [row addChoice:[NSString stringWithUTF8String:option.choices[c].choice]
                         title:textOrKeyword(option.choices[c].text, option.choices[c].choice)];
    }
}

- (void)addLayout
{
    struct {
        NSString *keyword, *title;
        NSArray *choices, *titles;
    } const rows[] = {
        {@"number-up", localized(@"Pages per Sheet"), @[ @"1", @"2", @"4", @"6", @"9", @"16" ], nil},
        {@"outputorder", localized(@"Page Order"), @[ @"normal", @"reverse" ],
         @[ localized(@"First to Last"), localized(@"Last to First") ]},
        {@"multiple-document-handling", localized(@"Copies in Order"),
         @[ @"separate-documents-uncollated-copies", @"separate-documents-collated-copies" ],
         @[ localized(@"Page by Page"), localized(@"Copy by Copy (Collated)") ]},
    };
    for (const auto& r : rows) {
        PaperRow* row = [self addRow:r.keyword title:r.title group:localized(@"Layout")];
        row->standard = [[r.choices objectAtIndex:0] retain];
        for (NSUInteger i = 0; i < [r.choices count]; ++i)
            [row addChoice:[r.choices objectAtIndex:i]
                     title:[(r.titles != nil ? r.titles : r.choices) objectAtIndex:i]];
    }
}

/// From the top down, with a heading before each group.
- (void)layOutWithWidth:(CGFloat)width
{
    NSView* content = [[[NSView alloc] initWithFrame:NSZeroRect] autorelease];
    NSString* group = nil;
    CGFloat down = 8;
    NSMutableArray* parts = [NSMutableArray array];
    for (PaperRow* row in rows_) {
        if (![row->group isEqual:group]) {
            group = row->group;
            NSRect frame = NSMakeRect(8, down, width - 16, 20);
            NSTextField* heading = makeLabel(frame, group, NSLeftTextAlignment);
            [heading setFont:[NSFont boldSystemFontOfSize:12]];
            [parts addObject:heading];
            down += kHeading;
        }
        NSRect frame = NSMakeRect(kIndent, down + 3, width / 2 - kIndent - 8, 18);
        [parts addObject:makeLabel(frame, [row->title stringByAppendingString:@":"], NSRightTextAlignment)];
        [row->popUp setFrame:NSMakeRect(width / 2, down, width / 2 - 12, 24)];
        [row select:nil];
        [parts addObject:row->popUp];
        down += kRow;
    }
    [content setFrameSize:NSMakeSize(width, MAX(down, NSHeight([self frame]) - 4))];
    for (NSView* part in parts) {
        CGFloat y = NSHeight([content frame]) - NSMinY([part frame]) - NSHeight([part frame]);
        [part setFrameOrigin:NSMakePoint(NSMinX([part frame]), y)];
        [content addSubview:part];
    }
    [self setDocumentView:content];
    [content scrollPoint:NSMakePoint(0, NSHeight([content frame]))];
}

- (instancetype)initWithFrame:(NSRect)frame
                      ppdFile:(ppd_file_t*)ppd
                      claimed:(NSArray*)claimed
                       target:(id)target
                       action:(SEL)action
{
    self = [super initWithFrame:frame];
    rows_ = [[NSMutableArray alloc] init];
    choices_ = [[NSMutableDictionary alloc] init];
    target_ = target;
    action_ = action;
    for (int i = 0; i < ppd->num_groups; ++i)
        [self addGroup:ppd->groups[i] claimed:claimed];
    [self addLayout];
    [self setDrawsBackground:NO];
    [self setHasVerticalScroller:YES];
    [self setBorderType:NSBezelBorder];
    [self layOutWithWidth:[self contentSize].width];
    return self;
}

- (void)dealloc
{
    for (PaperRow* row in rows_)
        [row->popUp setTarget:nil];
    [rows_ release];
    [choices_ release];
    [super dealloc];
}

- (void)choose:(NSPopUpButton*)sender
{
    PaperRow* row = [rows_ objectAtIndex:static_cast<NSUInteger>([sender tag])];
    NSString* choice = [[sender selectedItem] representedObject];
    if ([choice isEqual:row->standard])
        [choices_ removeObjectForKey:row->keyword];
    else
        [choices_ setObject:choice forKey:row->keyword];
    [NSApp sendAction:action_ to:target_ from:self];
}

- (NSDictionary*)choices
{
    return [NSDictionary dictionaryWithDictionary:choices_];
}

- (void)setChoices:(NSDictionary*)choices
{
    [choices_ removeAllObjects];
    for (PaperRow* row in rows_) {
        NSString* choice = [choices objectForKey:row->keyword];
        [row select:choice];
        if (choice != nil && [[[row->popUp selectedItem] representedObject] isEqual:choice])
            [choices_ setObject:choice forKey:row->keyword];
    }
}

- (NSArray*)summary
{
    NSMutableArray* rows = [NSMutableArray array];
    for (PaperRow* row in rows_)
        [rows addObject:@[ row->title, [row->popUp titleOfSelectedItem] ]];
    return rows;
}

@end
