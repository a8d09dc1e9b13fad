#include "DialogWindow.h"

#include "Controls.h"
#include "Text.h"

static const CGFloat kMargin = 20, kRow = 32, kLine = 24, kLabelWidth = 112, kGap = 8;
static const CGFloat kButtonWidth = 96, kButtonHeight = 26, kLeastWidth = 520, kEmptyPageHeight = 280;
static const CGFloat kFieldLeft = kMargin + kLabelWidth + kGap;
static const CGFloat kHeaderHeight = 4 * kRow + 12;
static const int kMostCopies = 9999;

/// The number that `text` is, without a sign or anything around it; 0 when it is none.
static int wholeNumber(NSString* text)
{
    int number = [text intValue];
    return number > 0 && [[NSString stringWithFormat:@"%d", number] isEqual:text] ? number : 0;
}

@implementation DialogWindow

- (void)addLabel:(NSString*)text row:(int)row
{
    NSRect frame = NSMakeRect(kMargin, kHeaderHeight - row * kRow + 2, kLabelWidth, 18);
    [header_ addSubview:makeLabel(frame, text, NSRightTextAlignment)];
}

- (NSPopUpButton*)addPopUpWithAction:(SEL)action target:(id)target row:(int)row
{
    NSRect frame =
        NSMakeRect(kFieldLeft, kHeaderHeight - row * kRow, kLeastWidth - kFieldLeft - kMargin, kLine);
    NSPopUpButton* popUp = makePopUp(frame, target, action);
    [popUp setAutoresizingMask:NSViewWidthSizable];
    [header_ addSubview:popUp];
    return popUp;
}

- (void)addCopiesInRow:(int)row
{
    [self addLabel:localized(@"Copies:") row:row];
    CGFloat y = kHeaderHeight - row * kRow;
    copies_ = makeField(NSMakeRect(kFieldLeft, y + 1, 48, 22), @"1");
    [copies_ setTarget:self];
    [copies_ setAction:@selector(copiesTyped:)];
    stepper_ = [[[NSStepper alloc] initWithFrame:NSMakeRect(kFieldLeft + 52, y + 1, 16, 22)] autorelease];
    [stepper_ setMinValue:1];
    [stepper_ setMaxValue:kMostCopies];
    [stepper_ setIntValue:1];
    [stepper_ setTarget:self];
    [stepper_ setAction:@selector(copiesStepped:)];
    NSTextField* label =
        makeLabel(NSMakeRect(kFieldLeft + 72, y + 2, 64, 18), localized(@"Pages:"), NSRightTextAlignment);
    for (NSView* part in @[ copies_, stepper_, label ])
        [header_ addSubview:part];
    rangeChoice_ = makePopUp(NSMakeRect(kFieldLeft + 144, y, 110, kLine), self, @selector(rangeChosen:));
    [rangeChoice_ addItemsWithTitles:@[ localized(@"All"), localized(@"Only these") ]];
    [header_ addSubview:rangeChoice_];
    range_ =
        makeField(NSMakeRect(kFieldLeft + 262, y + 1, kLeastWidth - kMargin - kFieldLeft - 262, 22), @"");
    [range_ setAutoresizingMask:NSViewWidthSizable];
    [range_ setDelegate:(id)self];
    [range_ setToolTip:localized(@"Page numbers and ranges, for example 1-3, 5")];
    [header_ addSubview:range_];
}

- (instancetype)initWithTarget:(id<DialogActions>)target title:(NSString*)title
{
    self = [super init];
    window_ = makeWindow(NSMakeSize(kLeastWidth, 400), title);
    [window_ setDelegate:(id)self];
    NSView* content = [window_ contentView];
    header_ = [[[NSView alloc] initWithFrame:NSMakeRect(0, 0, kLeastWidth, kHeaderHeight)] autorelease];
    [content addSubview:header_];
    [self addLabel:localized(@"Printer:") row:1];
    printers_ = [self addPopUpWithAction:@selector(printerChosen:) target:target row:1];
    [self addLabel:localized(@"Presets:") row:2];
    presets_ = [self addPopUpWithAction:@selector(presetChosen:) target:target row:2];
    [self addCopiesInRow:3];
    [self addLabel:localized(@"Show:") row:4];
    pages_ = [self addPopUpWithAction:@selector(pageChosen:) target:target row:4];
    NSRect button = NSMakeRect(0, 16, kButtonWidth, kButtonHeight);
    cancel_ = makeButton(button, localized(@"Cancel"), target, @selector(cancel:));
    [cancel_ setKeyEquivalent:@"\e"];
    print_ = makeButton(button, localized(@"Print"), target, @selector(print:));
    [print_ setKeyEquivalent:@"\r"];
    note_ = makeLabel(NSMakeRect(kMargin, 12, 0, 34), @"", NSLeftTextAlignment);
    [[note_ cell] setWraps:YES];
    [content addSubview:note_];
    [content addSubview:cancel_];
    [content addSubview:print_];
    pageSize_ = NSMakeSize(kLeastWidth - 2 * kMargin, kEmptyPageHeight);
    [self showPage:nil];
    [window_ setInitialFirstResponder:printers_];
    [window_ center];
    return self;
}

- (void)dealloc
{
    [window_ setDelegate:nil];
    [range_ setDelegate:nil];
    [window_ release];
    [super dealloc];
}

- (NSWindow*)window
{
    return window_;
}

- (NSPopUpButton*)printers
{
    return printers_;
}

- (NSPopUpButton*)presets
{
    return presets_;
}

- (NSPopUpButton*)pages
{
    return pages_;
}

- (BOOL)hasPage
{
    return page_ != nil;
}

- (NSSize)pageSize
{
    return pageSize_;
}

- (void)showPage:(NSView*)view
{
    [page_ removeFromSuperview];
    page_ = nil;
    if (view != nil)
        pageSize_ = [view frame].size;
    NSSize size = pageSize_;
    CGFloat width = MAX(kLeastWidth, size.width + 2 * kMargin);
    CGFloat bottom = 16 + kButtonHeight + 16;
    NSRect frame = [window_ frame];
    NSRect wanted =
        [NSWindow frameRectForContentRect:NSMakeRect(0, 0, width, bottom + size.height + kHeaderHeight)
                                styleMask:[window_ styleMask]];
    // The upper left corner stays where the user put it.
    wanted.origin = NSMakePoint(NSMinX(frame), NSMaxY(frame) - NSHeight(wanted));
    [window_ setFrame:wanted display:NO];
    [header_ setFrame:NSMakeRect(0, bottom + size.height, width, kHeaderHeight)];
    [print_ setFrameOrigin:NSMakePoint(width - kMargin - kButtonWidth, 16)];
    [cancel_ setFrameOrigin:NSMakePoint(width - kMargin - 2 * kButtonWidth - 12, 16)];
    [note_ setFrameSize:NSMakeSize(NSMinX([cancel_ frame]) - kMargin - kGap, 34)];
    if (view != nil) {
        [view setFrameOrigin:NSMakePoint((width - size.width) / 2, bottom)];
        [[window_ contentView] addSubview:view];
        page_ = view;
    }
    [[window_ contentView] setNeedsDisplay:YES];
}

- (void)showNotice:(NSString*)text
{
    NSSize size = pageSize_;
    NSView* view = [[[NSView alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)] autorelease];
    [view addSubview:makeLabel(NSMakeRect(0, size.height / 2 - 10, size.width, 20), text,
                               NSCenterTextAlignment)];
    [self showPage:view];
}

- (void)copiesTyped:(id)sender
{
    [stepper_ setIntValue:MAX(1, [self copies])];
}

- (void)copiesStepped:(id)sender
{
    [copies_ setIntValue:[stepper_ intValue]];
}

- (void)rangeChosen:(id)sender
{
    if ([rangeChoice_ indexOfSelectedItem] == 1)
        [window_ makeFirstResponder:range_];
}

/// Typing a range chooses it.
- (void)controlTextDidChange:(NSNotification*)notification
{
    [rangeChoice_ selectItemAtIndex:1];
}

- (BOOL)windowShouldClose:(id)sender
{
    [cancel_ performClick:nil];
    return NO;
}

- (int)copies
{
    int copies = wholeNumber([copies_ stringValue]);
    return copies <= kMostCopies ? copies : 0;
}

- (void)selectWrongField
{
    if ([self copies] == 0)
        [copies_ selectText:nil];
    else if ([self pageRanges] == nil)
        [range_ selectText:nil];
}

- (void)setNote:(NSString*)text
{
    [note_ setStringValue:text];
}

- (NSString*)note
{
    return [note_ stringValue];
}

- (NSString*)pageRanges
{
    if ([rangeChoice_ indexOfSelectedItem] == 0)
        return @"";
    NSString* text = [[range_ stringValue] stringByReplacingOccurrencesOfString:@" " withString:@""];
    int last = 0;
    for (NSString* part in [text componentsSeparatedByString:@","]) {
        NSArray* ends = [part componentsSeparatedByString:@"-"];
        for (NSString* end in ends) {
            int page = wholeNumber(end);
            // Ascending, as the printing system wants them.
            if (page == 0 || page < last)
                return nil;
            last = page;
        }
        if ([ends count] > 2)
            return nil;
    }
    return text;
}

- (void)setCopies:(int)copies pageRanges:(NSString*)ranges
{
    [copies_ setIntValue:MAX(1, MIN(kMostCopies, copies))];
    [stepper_ setIntValue:[copies_ intValue]];
    [range_ setStringValue:ranges];
    [rangeChoice_ selectItemAtIndex:[ranges length] == 0 ? 0 : 1];
}

@end
