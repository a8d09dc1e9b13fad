#include "ControlRows.h"

#include "Outlets.h"

#import <AppKit/AppKit.h>

@protocol ControlTableOwner
- (const PDEControlItem*)getControlData;
@end

static NSView* viewNamed(id<PDEPanelProtocol> panel, const char* name)
{
    NSView* view = outletNamed(panel, name);
    return [view respondsToSelector:@selector(getControlData)] ? view : nil;
}

std::vector<ControlRow> controlRows(id<PDEPanelProtocol> panel)
{
    std::vector<ControlRow> rows;
    for (const char* name : {"onColorView", "onAdvancedView"}) {
        NSView* view = viewNamed(panel, name);
        const PDEControlItem* item = view != nil ? [(id<ControlTableOwner>)view getControlData] : nullptr;
        for (; item != nullptr && item->control != nil; ++item)
            rows.push_back({view, item, outletNameOf(view, item->control)});
    }
    return rows;
}

std::optional<ControlRow> controlRow(id<PDEPanelProtocol> panel, const std::string& field)
{
    for (const ControlRow& row : controlRows(panel))
        if (row.field == field)
            return row;
    return std::nullopt;
}

static void addValue(Json& report, const PDEControlItem& item)
{
    id control = item.control;
    switch (item.kind) {
    case PDEControlKindPopup:
        report["value"] = [control indexOfSelectedItem];
        report["title"] = textOf([control titleOfSelectedItem]);
        report["items"] = jsonOf([control itemTitles]);
        break;
    case PDEControlKindCheckBox:
        report["value"] = [(NSButton*)control intValue];
        report["title"] = textOf([(NSButton*)control title]);
        break;
    case PDEControlKindButton:
        report["title"] = textOf([(NSButton*)control title]);
        break;
    case PDEControlKindText:
        report["title"] = textOf([control stringValue]);
        break;
    case PDEControlKindTab:
        if ([control selectedTabViewItem] != nil) {
            report["value"] = [control indexOfTabViewItem:[control selectedTabViewItem]];
            report["title"] = textOf([[control selectedTabViewItem] label]);
        }
        report["items"] = jsonOf([[control tabViewItems] valueForKey:@"label"]);
        break;
    default:
        break;
    }
}

Json reportOf(const ControlRow& row)
{
    const PDEControlItem& item = *row.item;
    Json report = {
        {"field", row.field}, {"kind", item.kind}, {"ppdKey", item.ppdKey}, {"identifier", item.identifier},
        {"value", nullptr},   {"title", nullptr},  {"items", nullptr}};
    addValue(report, item);
    report["enabled"] = ![item.control respondsToSelector:@selector(isEnabled)] || [item.control isEnabled];
    return report;
}

std::string shownView(id<PDEPanelProtocol> panel)
{
    for (const char* name : {"onColorView", "onAdvancedView"}) {
        NSView* view = viewNamed(panel, name);
        if ([view superview] != nil)
            return shortClassName(view);
    }
    return "";
}

std::string chooseItem(id control, int index)
{
    if (![control isKindOfClass:[NSPopUpButton class]])
        return "not a pop-up button";
    if (index < 0 || index >= [control numberOfItems])
        return "no such item";
    if (![control isEnabled])
        return "";
    [control selectItemAtIndex:index];
    [control sendAction:[control action] to:[(NSControl*)control target]];
    return "";
}

std::string setCheckBox(id control, int state)
{
    if (![control isKindOfClass:[NSButton class]] || [control isKindOfClass:[NSPopUpButton class]])
        return "not a check box";
    if (state != 0 && state != 1)
        return "the state is 0 or 1";
    if ([(NSButton*)control intValue] != state)
        [control performClick:nil];
    return "";
}

std::string pressButton(id control, int)
{
    if (![control isKindOfClass:[NSButton class]] || [control isKindOfClass:[NSPopUpButton class]])
        return "not a button";
    [control performClick:nil];
    return "";
}

std::string selectTab(id control, int index)
{
    if (![control isKindOfClass:[NSTabView class]])
        return "not a tab view";
    if (index < 0 || index >= [control numberOfTabViewItems])
        return "no such tab";
    [control selectTabViewItemAtIndex:index];
    return "";
}
