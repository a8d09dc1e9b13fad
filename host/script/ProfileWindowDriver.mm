#include "ProfileWindowDriver.h"

#include "ControlRows.h"
#include "Outlets.h"

#import <AppKit/AppKit.h>
#include <objc/runtime.h>

static id controller(id<PDEPanelProtocol> panel)
{
    return outletNamed(panel, "profileControl");
}

static NSWindow* profileWindow(id<PDEPanelProtocol> panel)
{
    return outletNamed(controller(panel), "_profileManagementWindow");
}

static NSTableView* profileTable(id<PDEPanelProtocol> panel)
{
    return outletNamed(controller(panel), "_profileTableView");
}

bool hasProfileWindow(id<PDEPanelProtocol> panel)
{
    return profileWindow(panel) != nil && profileTable(panel) != nil;
}

bool profileWindowIsOpen(id<PDEPanelProtocol> panel)
{
    return [profileWindow(panel) isVisible] != 0;
}

static Json cellReport(NSTableView* table, NSTableColumn* column, NSInteger row)
{
    id value = [[table dataSource] tableView:table objectValueForTableColumn:column row:row];
    std::string identifier = textOf([column identifier]);
    if (identifier == "inmenu")
        return [value boolValue] != 0;
    if (identifier != "icon")
        return jsonOf(value);
    // The icon is either the cell's value or put into the cell before it is drawn.
    id cell = [column dataCellForRow:row];
    if ([[table delegate] respondsToSelector:@selector(tableView:willDisplayCell:forTableColumn:row:)])
        [[table delegate] tableView:table willDisplayCell:cell forTableColumn:column row:row];
    return [value isKindOfClass:[NSImage class]] || [cell image] != nil;
}

static Json fieldReport(NSTextField* field)
{
    NSText* editor = [field currentEditor];
    Json caret = editor != nil ? Json([editor selectedRange].location) : Json(nullptr);
    return {{"text", textOf([field stringValue])}, {"caret", caret}};
}

Json profileWindowReport(id<PDEPanelProtocol> panel)
{
    id control = controller(panel);
    NSTableView* table = profileTable(panel);
    Json rows = Json::array(), fields = Json::object(), enabled = Json::object();
    for (NSInteger row = 0; row < [[table dataSource] numberOfRowsInTableView:table]; ++row) {
        Json cells = Json::object();
        for (NSTableColumn* column in [table tableColumns])
            cells[textOf([column identifier])] = cellReport(table, column, row);
        rows.push_back(cells);
    }
    for (const std::string& name : outletNames(control)) {
        id outlet = outletNamed(control, name);
        if ([outlet isKindOfClass:[NSTextField class]] && [outlet isEditable])
            fields[name] = fieldReport(outlet);
        if ([outlet isKindOfClass:[NSControl class]])
            enabled[name] = [outlet isEnabled] != 0;
    }
    return {{"visible", profileWindowIsOpen(panel)},
            {"list", [outletNamed(control, "_profileMenu") indexOfSelectedItem]},
            {"mode", integerNamed(control, "buttonIdentify")},
            {"rows", rows},
            {"selected", [table selectedRow]},
            {"fields", fields},
            {"enabled", enabled}};
}

std::string chooseProfileList(id<PDEPanelProtocol> panel, int index)
{
    return chooseItem(outletNamed(controller(panel), "_profileMenu"), index);
}

std::string selectProfileRow(id<PDEPanelProtocol> panel, int row)
{
    NSTableView* table = profileTable(panel);
    id delegate = [table delegate];
    if (row < -1 || row >= [table numberOfRows])
        return "no such row";
    if (row == -1) {
        [table deselectAll:nil];
        return "";
    }
    // Selecting in code does not ask the delegate, a click does.
    if ([delegate respondsToSelector:@selector(selectionShouldChangeInTableView:)] &&
        ![delegate selectionShouldChangeInTableView:table])
        return "";
    if ([delegate respondsToSelector:@selector(tableView:shouldSelectRow:)] && ![delegate tableView:table
                                                                                    shouldSelectRow:row])
        return "";
    [table selectRowIndexes:[NSIndexSet indexSetWithIndex:static_cast<NSUInteger>(row)]
        byExtendingSelection:NO];
    return "";
}

std::string tickProfileRow(id<PDEPanelProtocol> panel, int row)
{
    NSTableView* table = profileTable(panel);
    NSTableColumn* column = [table tableColumnWithIdentifier:@"inmenu"];
    if (row < 0 || column == nil)
        return "no such check box";
    std::string reason = selectProfileRow(panel, row);
    if (!reason.empty() || [table selectedRow] != row)
        return reason;
    id source = [table dataSource];
    BOOL ticked = [[source tableView:table objectValueForTableColumn:column row:row] boolValue];
    [source tableView:table
        setObjectValue:[NSNumber numberWithInt:ticked ? 0 : 1]
        forTableColumn:column
                   row:row];
    [table setNeedsDisplay:YES];
    return "";
}

std::string typeInto(id<PDEPanelProtocol> panel, const std::string& field, NSString* text)
{
    NSWindow* window = profileWindow(panel);
    NSTextField* target = outletNamed(controller(panel), field);
    if (![target isKindOfClass:[NSTextField class]])
        return "there is no text field " + field;
    if (![target isEnabled] || ![target isEditable])
        return "";
    [window makeKeyAndOrderFront:nil];
    if ([target currentEditor] == nil && ![window makeFirstResponder:target])
        return "the field cannot be edited";
    id editor = [target currentEditor];
    if ([[editor string] length] > 0) {
        [editor setSelectedRange:NSMakeRange(0, [[editor string] length])];
        [editor deleteBackward:nil];
    }
    for (NSUInteger i = 0; i < [text length];) {
        NSRange key = [text rangeOfComposedCharacterSequenceAtIndex:i];
        [editor insertText:[text substringWithRange:key]];
        i = NSMaxRange(key);
    }
    return "";
}

/// The button below `view` that sends `action`.
static NSButton* buttonSending(NSView* view, SEL action)
{
    if ([view isKindOfClass:[NSButton class]] && sel_isEqual([(NSButton*)view action], action))
        return (NSButton*)view;
    for (NSView* part in [view subviews])
        if (NSButton* found = buttonSending(part, action))
            return found;
    return nil;
}

id profileWindowButton(id<PDEPanelProtocol> panel, const std::string& name)
{
    NSView* content = [profileWindow(panel) contentView];
    if (name == "window-ok")
        return buttonSending(content, NSSelectorFromString(@"profileWindowOK:"));
    if (name == "window-cancel")
        return buttonSending(content, NSSelectorFromString(@"profileWindowCancel:"));
    id outlet = outletNamed(controller(panel), name);
    return [outlet isKindOfClass:[NSButton class]] ? outlet : nil;
}

// Replacements of two methods of the open panel; the file names and URLs follow from these.

static NSArray* nextAnswer = nil;
static NSArray* lastAnswer = nil;

static NSInteger runWithAnswer(id, SEL, NSString*, NSString*, NSArray*)
{
    [lastAnswer release];
    lastAnswer = nextAnswer;
    nextAnswer = nil;
    return [lastAnswer count] > 0 ? NSOKButton : NSCancelButton;
}

static NSArray* answeredNames(id, SEL)
{
    return lastAnswer != nil ? lastAnswer : [NSArray array];
}

void answerNextOpenPanel(const std::string& path)
{
    Class panel = [NSOpenPanel class];
    SEL run = @selector(runModalForDirectory:file:types:);
    class_replaceMethod(panel, run, (IMP)runWithAnswer,
                        method_getTypeEncoding(class_getInstanceMethod(panel, run)));
    class_replaceMethod(panel, @selector(filenames), (IMP)answeredNames,
                        method_getTypeEncoding(class_getInstanceMethod(panel, @selector(filenames))));
    [nextAnswer release];
    NSString* name = stringOf(path);
    nextAnswer = [name length] > 0 ? [[NSArray alloc] initWithObjects:name, nil] : nil;
}
