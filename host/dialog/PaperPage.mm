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

/// Straight into the menu: the pop-up keeps one item for a title, and two choices may be called alike.
static void addChoice(const PaperRow& row, NSString* keyword, NSString* title)
{
    [[[row.popUp menu] addItemWithTitle:title action:nullptr keyEquivalent:@""] setRepresentedObject:keyword];
}

@implementation PaperPage

/// Sizes typed in by the user are not offered, nor is what the other keyword of a paper size stands for.
- (void)addGroup:(const ppd_group_t&)group claimed:(NSArray*)claimed
{
    if (strcmp(group.name, "InstallableOptions") == 0)
        return;
    for (int i = 0; i < group.num_options; ++i) {
        const ppd_option_t& option = group.options[i];
        if (option.ui == PPD_UI_PICKMANY || strcmp(option.keyword, "PageRegion") == 0 ||
            [claimed containsObject:stringOf(option.keyword)])
            continue;
        rows_.push_back({option.keyword, textOf(textOrKeyword(option.text, option.keyword)),
                         textOf(textOrKeyword(group.text, group.name)), option.defchoice,
                         makePopUp(NSZeroRect, nil, nullptr)});
        for (int c = 0; c < option.num_choices; ++c) {
            const ppd_choice_t& choice = option.choices[c];
            if (strcmp(choice.choice, "Custom") != 0)
                addChoice(rows_.back(), stringOf(choice.choice), textOrKeyword(choice.text, choice.choice));
        }
    }
}

- (void)addLayout
{
    struct {
        const char* keyword;
        NSString* title;
        NSArray *choices, *titles;
    } const rows[] = {
        {"number-up", localized(@"Pages per Sheet"), @[ @"1", @"2", @"4", @"6", @"9", @"16" ], nil},
        {"outputorder", localized(@"Page Order"), @[ @"normal", @"reverse" ],
         @[ localized(@"First to Last"), localized(@"Last to First") ]},
        {"multiple-document-handling", localized(@"Copies in Order"),
         @[ @"separate-documents-uncollated-copies", @"separate-documents-collated-copies" ],
         @[ localized(@"Page by Page"), localized(@"Copy by Copy (Collated)") ]},
    };
    for (const auto& r : rows) {
        rows_.push_back({r.keyword, textOf(r.title), textOf(localized(@"Layout")),
                         textOf([r.choices objectAtIndex:0]), makePopUp(NSZeroRect, nil, nullptr)});
        for (NSUInteger i = 0; i < [r.choices count]; ++i)
            addChoice(rows_.back(), [r.choices objectAtIndex:i],
                      [r.titles != nil ? r.titles : r.choices objectAtIndex:i]);
    }
}

/// From the top down, with a heading before each group.
- (void)layOutWithWidth:(CGFloat)width
{
    NSView* content = [[[NSView alloc] initWithFrame:NSZeroRect] autorelease];
    std::string group;
    CGFloat down = 8;
    NSMutableArray* parts = [NSMutableArray array];
    for (const PaperRow& row : rows_) {
        if (row.group != group) {
            group = row.group;
            NSRect frame = NSMakeRect(8, down, width - 16, 20);
            NSTextField* heading = makeLabel(frame, stringOf(group), NSLeftTextAlignment);
            [heading setFont:[NSFont boldSystemFontOfSize:12]];
            [parts addObject:heading];
            down += kHeading;
        }
        NSRect frame = NSMakeRect(kIndent, down + 3, width / 2 - kIndent - 8, 18);
        [parts addObject:makeLabel(frame, stringOf(row.title + ":"), NSRightTextAlignment)];
        [row.popUp setFrame:NSMakeRect(width / 2, down, width / 2 - 12, 24)];
        [parts addObject:row.popUp];
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
    for (int i = 0; i < ppd->num_groups; ++i)
        [self addGroup:ppd->groups[i] claimed:claimed];
    [self addLayout];
    for (const PaperRow& row : rows_) {
        [row.popUp setTarget:target];
        [row.popUp setAction:action];
    }
    [self setChoices:nil];
    [self setDrawsBackground:NO];
    [self setHasVerticalScroller:YES];
    [self setBorderType:NSBezelBorder];
    [self layOutWithWidth:[self contentSize].width];
    return self;
}

- (NSDictionary*)choices
{
    NSMutableDictionary* choices = [NSMutableDictionary dictionary];
    for (const PaperRow& row : rows_) {
        NSString* choice = [[row.popUp selectedItem] representedObject];
        if (textOf(choice) != row.standard)
            [choices setValue:choice forKey:stringOf(row.keyword)];
    }
    return choices;
}

- (void)setChoices:(NSDictionary*)choices
{
    for (const PaperRow& row : rows_) {
        NSString* choice = [choices objectForKey:stringOf(row.keyword)];
        NSInteger index = choice != nil ? [row.popUp indexOfItemWithRepresentedObject:choice] : -1;
        if (index < 0)
            index = [row.popUp indexOfItemWithRepresentedObject:stringOf(row.standard)];
        [row.popUp selectItemAtIndex:index];
    }
}

- (NSArray*)summary
{
    NSMutableArray* rows = [NSMutableArray array];
    for (const PaperRow& row : rows_)
        [rows addObject:@[ stringOf(row.title), [row.popUp titleOfSelectedItem] ]];
    return rows;
}

@end
