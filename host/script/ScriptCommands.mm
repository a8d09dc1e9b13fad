#include "ScriptCommands.h"

#include "ControlRows.h"
#include "Outlets.h"
#include "ProfileWindowDriver.h"
#include "Screenshot.h"

#include <charconv>
#include <cmath>
#include <iterator>
#include <optional>

namespace {

/// The first word of `text`, which is cut to what follows the blank after it.
std::string takeWord(std::string& text)
{
    std::string word = text.substr(0, text.find(' '));
    text.erase(0, word.size() + 1);
    return word;
}

std::optional<int> integerIn(const std::string& text)
{
    int value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    bool whole = error == std::errc() && end == text.data() + text.size();
    return whole ? std::optional<int>(value) : std::nullopt;
}

/// Any call makes the panel load itself; one that changes nothing is right for looking at it.
void load(id<PDEPanelProtocol> panel)
{
    if (outletNamed(panel, "onColorView") == nil)
        [panel supportedPPDOptionKeys];
}

Json rowAnswer(DialogController* dialog, const std::string& field)
{
    std::optional<ControlRow> row = controlRow([dialog panel], field);
    return row ? reportOf(*row) : errorAnswer("there is no control " + field);
}

// Lines without a panel

Json open(DialogController* dialog, std::string)
{
    NSUInteger count = [dialog openPanel];
    id<PDEPanelProtocol> panel = [dialog panel];
    return {{"panels", count}, {"kind", jsonOf([panel panelKind])}, {"name", jsonOf([panel panelName])}};
}

Json panels(DialogController* dialog, std::string type)
{
    id<PDEPlugInProtocol> principal = [[dialog plugIn] principal];
    PanelSession* host = [[[PanelSession alloc] initWithPlugIn:nil settings:[dialog settings]
                                                       printer:nil] autorelease];
    NSArray* panels = [principal PDEPanelsForType:stringOf(type) withHostInfo:host];
    [[panels objectEnumerator] nextObject];
    for (id<PDEPanelProtocol> panel in panels)
        [panel terminate];
    return {{"panels", panels != nil ? Json([panels count]) : Json(nullptr)}};
}

Json settings(DialogController* dialog, std::string)
{
    return {{"settings", jsonOf([[dialog settings] values])}};
}

Json loadFile(DialogController* dialog, std::string file)
{
    NSString* reason = nil;
    if (![dialog loadSettings:stringOf(file) error:&reason])
        return errorAnswer(textOf(reason));
    return settings(dialog, "");
}

Json job(DialogController* dialog, std::string)
{
    return {{"options", [dialog jobOptions]}};
}

Json screenshot(DialogController* dialog, std::string file)
{
    [dialog showSomePage];
    if (!writeScreenshot([dialog frontWindow], stringOf(file)))
        return errorAnswer(file + ": the picture cannot be taken or written");
    return {{"screenshot", file}};
}

Json page(DialogController* dialog, std::string name)
{
    if (name != "panel" && name != "summary")
        return errorAnswer("page panel or page summary");
    [dialog showPageAtIndex:name == "summary" ? 1 : 0];
    return {{"page", name}};
}

Json answerBrowse(DialogController*, std::string path)
{
    answerNextOpenPanel(path);
    return {{"result", true}};
}

// Lines for the open panel

Json keys(DialogController* dialog, std::string)
{
    return {{"keys", jsonOf([[dialog panel] supportedPPDOptionKeys])}};
}

Json view(DialogController* dialog, std::string)
{
    NSView* view = [dialog showPanelView];
    if (view == nil)
        return errorAnswer("the panel has no view");
    NSSize size = [view frame].size;
    return {{"view", shortClassName(view)},
            {"width", std::lround(size.width)},
            {"height", std::lround(size.height)}};
}

Json willShow(DialogController* dialog, std::string)
{
    [[dialog panel] willShow];
    return {{"result", nullptr}};
}

Json shouldHide(DialogController* dialog, std::string)
{
    return {{"result", [[dialog panel] shouldHide] != 0}};
}

Json restore(DialogController* dialog, std::string)
{
    return {{"result", [[dialog panel] restoreValuesAndReturnError:nullptr] != 0}};
}

Json save(DialogController* dialog, std::string)
{
    return {{"result", [[dialog panel] saveValuesAndReturnError:nullptr] != 0}};
}

Json shouldPrint(DialogController* dialog, std::string)
{
    return {{"result", [[dialog panel] shouldPrint] != 0}};
}

Json terminate(DialogController* dialog, std::string)
{
    [dialog terminatePanel];
    return {{"result", nullptr}};
}

Json summary(DialogController* dialog, std::string)
{
    NSMutableDictionary* values = [[[[dialog panel] summaryInfo] mutableCopy] autorelease];
    Json order = jsonOf([values objectForKey:@"Summary Display Order"]);
    [values removeObjectForKey:@"Summary Display Order"];
    return {{"order", order}, {"values", jsonOf(values)}};
}

Json shown(DialogController* dialog, std::string)
{
    std::string name = shownView([dialog panel]);
    return {{"shown", name.empty() ? Json(nullptr) : Json(name)}};
}

Json controls(DialogController* dialog, std::string)
{
    load([dialog panel]);
    Json rows = Json::array();
    for (const ControlRow& row : controlRows([dialog panel]))
        rows.push_back(reportOf(row));
    return {{"controls", rows}};
}

Json print(DialogController* dialog, std::string)
{
    [dialog finishPanelForPrinting];
    JobResult result = [dialog submitJobWithProgress:[](int) {}];
    if (!result.error.empty())
        return errorAnswer(result.error);
    return {{"job", result.id > 0 ? Json(result.id) : Json(nullptr)}};
}

/// `act` on the control of a view's row.
template <typename Act>
Json withControl(DialogController* dialog, const std::string& field, Act act)
{
    load([dialog panel]);
    std::optional<ControlRow> row = controlRow([dialog panel], field);
    if (!row)
        return errorAnswer("there is no control " + field);
    std::string reason = act(row->item->control);
    return reason.empty() ? rowAnswer(dialog, field) : errorAnswer(field + ": " + reason);
}

Json choose(DialogController* dialog, std::string argument)
{
    std::string field = takeWord(argument);
    std::optional<int> index = integerIn(argument);
    if (!index)
        return errorAnswer("choose FIELD INDEX");
    return withControl(dialog, field, [&](id control) { return chooseItem(control, *index); });
}

Json check(DialogController* dialog, std::string argument)
{
    std::string field = takeWord(argument);
    std::optional<int> state = integerIn(argument);
    if (!state)
        return errorAnswer("check FIELD 0/1");
    return withControl(dialog, field, [&](id control) { return setCheckBox(control, *state); });
}

Json tab(DialogController* dialog, std::string argument)
{
    std::optional<int> index = integerIn(argument);
    load([dialog panel]);
    for (const ControlRow& row : controlRows([dialog panel]))
        if (row.item->kind == PDEControlKindTab && index)
            return withControl(dialog, row.field, [&](id control) { return selectTab(control, *index); });
    return errorAnswer(index ? "there is no tab view" : "tab INDEX");
}

// Lines for the profile window

Json window(DialogController* dialog, std::string)
{
    return profileWindowReport([dialog panel]);
}

Json windowAfter(DialogController* dialog, const std::string& reason)
{
    return reason.empty() ? profileWindowReport([dialog panel]) : errorAnswer(reason);
}

Json list(DialogController* dialog, std::string argument)
{
    std::optional<int> index = integerIn(argument);
    return index ? windowAfter(dialog, chooseProfileList([dialog panel], *index)) : errorAnswer("list INDEX");
}

Json row(DialogController* dialog, std::string argument)
{
    std::optional<int> index = integerIn(argument);
    return index ? windowAfter(dialog, selectProfileRow([dialog panel], *index)) : errorAnswer("row INDEX");
}

Json tick(DialogController* dialog, std::string argument)
{
    std::optional<int> index = integerIn(argument);
    return index ? windowAfter(dialog, tickProfileRow([dialog panel], *index)) : errorAnswer("tick ROW");
}

Json type(DialogController* dialog, std::string argument)
{
    std::string field = takeWord(argument);
    return windowAfter(dialog, typeInto([dialog panel], field, stringOf(argument)));
}

Json press(DialogController* dialog, std::string field)
{
    id<PDEPanelProtocol> panel = [dialog panel];
    load(panel);
    if (controlRow(panel, field)) {
        if (modalWindowIsOpen())
            return errorAnswer("a modal window is open");
        return withControl(dialog, field, pressButton);
    }
    id button = profileWindowButton(panel, field);
    if (button == nil)
        return errorAnswer("there is no button " + field);
    if (!profileWindowIsOpen(panel))
        return errorAnswer("the profile window is not open");
    return windowAfter(dialog, pressButton(button));
}

enum Need { kNothing = 0, kPanel = 1, kNoModal = 2, kProfileWindow = 4, kOpenProfileWindow = 8 };

struct Command {
    const char* name;
    Json (*run)(DialogController*, std::string argument);
    int needs;
};

constexpr Command kCommands[] = {
    {"open", open, kNoModal},
    {"panels", panels, kNothing},
    {"keys", keys, kPanel},
    {"view", view, kPanel},
    {"will-show", willShow, kPanel},
    {"should-hide", shouldHide, kPanel},
    {"restore", restore, kPanel},
    {"save", save, kPanel},
    {"should-print", shouldPrint, kPanel},
    {"terminate", terminate, kPanel | kNoModal},
    {"summary", summary, kPanel},
    {"shown", shown, kPanel},
    {"page", page, kPanel | kNoModal},
    {"controls", controls, kPanel},
    {"choose", choose, kPanel | kNoModal},
    {"check", check, kPanel | kNoModal},
    {"press", press, kPanel},
    {"tab", tab, kPanel | kNoModal},
    {"settings", settings, kNothing},
    {"load", loadFile, kNothing},
    {"job", job, kNothing},
    {"print", print, kPanel | kNoModal},
    {"screenshot", screenshot, kNothing},
    {"window", window, kPanel | kProfileWindow},
    {"list", list, kPanel | kProfileWindow | kOpenProfileWindow},
    {"row", row, kPanel | kProfileWindow | kOpenProfileWindow},
    {"tick", tick, kPanel | kProfileWindow | kOpenProfileWindow},
    {"type", type, kPanel | kProfileWindow | kOpenProfileWindow},
    {"browse-answer", answerBrowse, kNothing},
};

std::string unmetNeed(DialogController* dialog, int needs)
{
    if ((needs & kPanel) != 0 && [dialog panel] == nil)
        return "no panel is open";
    if ((needs & kNoModal) != 0 && modalWindowIsOpen())
        return "a modal window is open";
    if ((needs & kProfileWindow) != 0) {
        load([dialog panel]);
        if (!hasProfileWindow([dialog panel]))
            return "there is no profile window";
    }
    if ((needs & kOpenProfileWindow) != 0 && !profileWindowIsOpen([dialog panel]))
        return "the profile window is not open";
    return "";
}

} // namespace

bool modalWindowIsOpen()
{
    return [[NSApp modalWindow] isVisible] != 0;
}

Json runScriptLine(DialogController* dialog, const std::string& line)
{
    std::string argument = line;
    std::string name = takeWord(argument);
    for (const Command& command : kCommands) {
        if (name != command.name)
            continue;
        @try {
            std::string reason = unmetNeed(dialog, command.needs);
            return reason.empty() ? command.run(dialog, argument) : errorAnswer(reason);
        } @catch (NSException* exception) {
            return errorAnswer(textOf([exception name]) + ": " + textOf([exception reason]));
        }
    }
    return errorAnswer("unknown line: " + line);
}

Json answerOfOpenLine(DialogController* dialog, const std::string& line)
{
    std::string field = line;
    (void)takeWord(field); // the command
    return rowAnswer(dialog, takeWord(field));
}
