#include "Prompts.h"

#include "Controls.h"
#include "SummaryView.h"
#include "Text.h"

@interface ModalEnd : NSObject
@end

@implementation ModalEnd

- (void)accept:(id)sender
{
    [NSApp stopModalWithCode:NSOKButton];
}

- (void)cancel:(id)sender
{
    [NSApp stopModalWithCode:NSCancelButton];
}

- (BOOL)windowShouldClose:(id)sender
{
    [NSApp stopModalWithCode:NSCancelButton];
    return NO;
}

@end

NSString* promptForName(NSString* question, NSString* proposal)
{
    ModalEnd* end = [[[ModalEnd alloc] init] autorelease];
    NSWindow* window = [makeWindow(NSMakeSize(360, 120), localized(@"Preset")) autorelease];
    NSTextField* field = makeField(NSMakeRect(20, 54, 320, 22), proposal);
    NSButton* cancel = makeButton(NSMakeRect(148, 14, 90, 26), localized(@"Cancel"), end, @selector(cancel:));
    NSButton* save = makeButton(NSMakeRect(250, 14, 90, 26), localized(@"Save"), end, @selector(accept:));
    [cancel setKeyEquivalent:@"\e"];
    [save setKeyEquivalent:@"\r"];
    for (NSView* part in
         @[ makeLabel(NSMakeRect(20, 84, 320, 20), question, NSLeftTextAlignment), field, cancel, save ])
        [[window contentView] addSubview:part];
    // Return in the field is Save, as it is everywhere else in the window.
    [field setTarget:save];
    [field setAction:@selector(performClick:)];
    [window setInitialFirstResponder:field];
    [window setDelegate:(id)end];
    [window center];
    NSInteger answer = [NSApp runModalForWindow:window];
    [window setDelegate:nil];
    [window orderOut:nil];
    NSCharacterSet* blanks = [NSCharacterSet whitespaceAndNewlineCharacterSet];
    NSString* name = [[field stringValue] stringByTrimmingCharactersInSet:blanks];
    return answer == NSOKButton && [name length] > 0 ? name : nil;
}

void showTable(NSString* heading, NSArray* rows)
{
    ModalEnd* end = [[[ModalEnd alloc] init] autorelease];
    NSWindow* window = [makeWindow(NSMakeSize(500, 400), localized(@"Print")) autorelease];
    SummaryView* table = [[[SummaryView alloc] initWithFrame:NSMakeRect(20, 54, 460, 306)] autorelease];
    NSButton* close = makeButton(NSMakeRect(390, 14, 90, 26), localized(@"Close"), end, @selector(accept:));
    [close setKeyEquivalent:@"\r"];
    [table showRows:rows];
    for (NSView* part in
         @[ makeLabel(NSMakeRect(20, 368, 460, 20), heading, NSLeftTextAlignment), table, close ])
        [[window contentView] addSubview:part];
    [window setDelegate:(id)end];
    [window center];
    [NSApp runModalForWindow:window];
    [window setDelegate:nil];
    [window orderOut:nil];
}
