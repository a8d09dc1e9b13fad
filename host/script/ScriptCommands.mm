#include "ScriptCommands.h"

#include "ControlRows.h"
#include "Outlets.h"
#include "ProfileWindowDriver.h"

#include <charconv>
#include <cmath>
#include <optional>

namespace {

/// A line that is carried out.
struct Line {
    DialogController* dialog;
    id<PDEPanelProtocol> panel; ///< nil while none is open
    std::string field;          ///< the first word after the command, where the command takes one
    std::string text;           ///< what follows
    int number;                 ///< the same as a number, where the command takes one
};

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

Json result(Json value)
{
    return {{"result", value}};
}

Json rowAnswer(id<PDEPanelProtocol> panel, const std::string& field)
{
    std::optional<ControlRow> row = controlRow(panel, field);
    return row ? reportOf(*row) : errorAnswer("there is no control " + field);
}

Json open(const Line& line)
{
    NSUInteger count = [line.dialog openPanel];
    id<PDEPanelProtocol> panel = [line.dialog panel];
    return {{"panels", count}, {"kind", jsonOf([panel panelKind])}, {"name", jsonOf([panel panelName])}};
}

Json panels(const Line& line)
{
    id<PDEPlugInProtocol> principal = [[line.dialog plugIn] principal];
    PanelSession* host = [[[PanelSession alloc] initWithPlugIn:nil
                                                      settings:[line.dialog settings]
                                                       printer:nil] autorelease];
    NSArray* panels = [principal PDEPanelsForType:stringOf(line.text) withHostInfo:host];
    for (id<PDEPanelProtocol> panel in panels)
        [panel terminate];
    return {{"panels", panels != nil ? Json([panels count]) : Json(nullptr)}};
}

Json settings(const Line& line)
{
    return {{"settings", jsonOf([[line.dialog settings] values])}};
}

Json loadFile(const Line& line)
{
    NSString* reason = nil;
    return [line.dialog loadSettings:stringOf(line.text) error:&reason] ? settings(line)
                                                                        : errorAnswer(textOf(reason));
}

/// The frontmost window, drawn and written as PNG.
Json screenshot(const Line& line)
{
    [line.dialog showSomePage];
    NSWindow* window = [line.dialog frontWindow];
    NSView* content = [window contentView];
    [window orderFrontRegardless];
    [window display];
    NSData* png = nil;
    if ([content canDraw]) {
        [content lockFocus];
        NSBitmapImageRep* image =
            [[[NSBitmapImageRep alloc] initWithFocusedViewRect:[content bounds]] autorelease];
        [content unlockFocus];
        png = [image representationUsingType:NSPNGFileType properties:[NSDictionary dictionary]];
    }
    if (![png writeToFile:stringOf(line.text) atomically:YES])
        return errorAnswer(line.text + ": the picture cannot be taken or written");
    return {{"screenshot", line.text}};
}

Json page(const Line& line)
{
    if (line.text != "panel" && line.text != "summary")
        return errorAnswer("page panel or page summary");
    [line.dialog showPage:line.text == "summary" ? kSummaryPage : kPanelPage];
    return {{"page", line.text}};
}

Json view(const Line& line)
{
    NSView* view = [line.dialog showPanelView];
    if (view == nil)
        return errorAnswer("the panel has no view");
    NSSize size = [view frame].size;
    return {{"view", shortClassName(view)},
            {"width", std::lround(size.width)},
            {"height", std::lround(size.height)}};
}

Json summary(const Line& line)
{
    NSMutableDictionary* values = [[[line.panel summaryInfo] mutableCopy] autorelease];
    Json order = jsonOf([values objectForKey:@"Summary Display Order"]);
    [values removeObjectForKey:@"Summary Display Order"];
    return {{"order", order}, {"values", jsonOf(values)}};
}

Json shown(const Line& line)
{
    std::string name = shownView(line.panel);
    return {{"shown", name.empty() ? Json(nullptr) : Json(name)}};
}

Json controls(const Line& line)
{
    load(line.panel);
    Json rows = Json::array();
    for (const ControlRow& row : controlRows(line.panel))
        rows.push_back(reportOf(row));
    return {{"controls", rows}};
}

Json print(const Line& line)
{
    [line.dialog finishPanelForPrinting];
    JobResult result = [line.dialog submitJob];
    if (!result.error.empty())
        return errorAnswer(result.error);
    return {{"job", result.id > 0 ? Json(result.id) : Json(nullptr)}};
}

/// `act` on the control of a view's row.
Json withControl(const Line& line, std::string (*act)(id control, int number))
{
    load(line.panel);
    std::optional<ControlRow> row = controlRow(line.panel, line.field);
    std::string reason = row ? act(row->item->control, line.number) : "";
    return reason.empty() ? rowAnswer(line.panel, line.field) : errorAnswer(line.field + ": " + reason);
}

Json choose(const Line& line)
{
    return withControl(line, chooseItem);
}

Json check(const Line& line)
{
    return withControl(line, setCheckBox);
}

Json tab(const Line& line)
{
    load(line.panel);
    for (const ControlRow& row : controlRows(line.panel))
        if (row.item->kind == PDEControlKindTab)
            return withControl({line.dialog, line.panel, row.field, "", line.number}, selectTab);
    return errorAnswer("there is no tab view");
}

// Lines for the profile window

Json window(const Line& line)
{
    return profileWindowReport(line.panel);
}

Json windowAfter(const Line& line, const std::string& reason)
{
    return reason.empty() ? profileWindowReport(line.panel) : errorAnswer(reason);
}

Json list(const Line& line)
{
    return windowAfter(line, chooseProfileList(line.panel, line.number));
}

Json row(const Line& line)
{
    return windowAfter(line, selectProfileRow(line.panel, line.number));
}

Json tick(const Line& line)
{
    return windowAfter(line, tickProfileRow(line.panel, line.number));
}

Json type(const Line& line)
{
    return windowAfter(line, typeInto(line.panel, line.field, stringOf(line.text)));
}

Json press(const Line& line)
{
    load(line.panel);
    if (controlRow(line.panel, line.field))
        return modalWindowIsOpen() ? errorAnswer("a modal window is open") : withControl(line, pressButton);
    id button = profileWindowButton(line.panel, line.field);
    if (button == nil)
        return errorAnswer("there is no button " + line.field);
    if (!profileWindowIsOpen(line.panel))
        return errorAnswer("the profile window is not open");
    return windowAfter(line, pressButton(button, 0));
}

Json answerBrowse(const Line& line)
{
    answerNextOpenPanel(line.text);
    return result(true);
}

// The calls of the panel's protocol

Json keys(const Line& line)
{
    return {{"keys", jsonOf([line.panel supportedPPDOptionKeys])}};
}

Json willShow(const Line& line)
{
    [line.panel willShow];
    return result(nullptr);
}

Json terminate(const Line& line)
{
    [line.dialog terminatePanel];
    return result(nullptr);
}

enum Need { kNothing = 0, kPanel = 1, kNoModal = 2, kProfileWindow = 4, kOpenProfileWindow = 8 };

struct Command {
    const char* usage; ///< the name; then FIELD for a word, INDEX, ROW or 0/1 for a number, else any text
    Json (*run)(const Line& line);
    int needs;
};

constexpr int kInProfileWindow = kPanel | kProfileWindow | kOpenProfileWindow;

constexpr Command kCommands[] = {
    {"open", open, kNoModal},
    {"panels TYPE", panels, kNothing},
    {"keys", keys, kPanel},
    {"view", view, kPanel},
    {"will-show", willShow, kPanel},
    {"should-hide", [](const Line& l) { return result([l.panel shouldHide] != 0); }, kPanel},
    {"restore", [](const Line& l) { return result([l.panel restoreValuesAndReturnError:nullptr] != 0); },
     kPanel},
    {"save", [](const Line& l) { return result([l.panel saveValuesAndReturnError:nullptr] != 0); }, kPanel},
    {"should-print", [](const Line& l) { return result([l.panel shouldPrint] != 0); }, kPanel},
    {"terminate", terminate, kPanel | kNoModal},
    {"summary", summary, kPanel},
    {"shown", shown, kPanel},
    {"page NAME", page, kPanel | kNoModal},
    {"controls", controls, kPanel},
    {"choose FIELD INDEX", choose, kPanel | kNoModal},
    {"check FIELD 0/1", check, kPanel | kNoModal},
    {"press FIELD", press, kPanel},
    {"tab INDEX", tab, kPanel | kNoModal},
    {"settings", settings, kNothing},
    {"load FILE", loadFile, kNothing},
    {"job",
     [](const Line& l) {
         return Json{{"options", [l.dialog jobOptions]}};
     },
     kNothing},
    {"print", print, kPanel | kNoModal},
    {"screenshot FILE", screenshot, kNothing},
    {"window", window, kPanel | kProfileWindow},
    {"list INDEX", list, kInProfileWindow},
    {"row INDEX", row, kInProfileWindow},
    {"tick ROW", tick, kInProfileWindow},
    {"type FIELD TEXT", type, kInProfileWindow},
    {"browse-answer PATH", answerBrowse, kNothing},
};

std::string unmetNeed(id<PDEPanelProtocol> panel, int needs)
{
    if ((needs & kPanel) != 0 && panel == nil)
        return "no panel is open";
    if ((needs & kNoModal) != 0 && modalWindowIsOpen())
        return "a modal window is open";
    if ((needs & kProfileWindow) != 0) {
        load(panel);
        if (!hasProfileWindow(panel))
            return "there is no profile window";
    }
    if ((needs & kOpenProfileWindow) != 0 && !profileWindowIsOpen(panel))
        return "the profile window is not open";
    return "";
}

Json carryOut(const Command& command, DialogController* dialog, std::string argument)
{
    Line line = {dialog, [dialog panel], "", "", 0};
    std::string usage = command.usage;
    if (usage.find("FIELD") != std::string::npos)
        line.field = takeWord(argument);
    line.text = argument;
    std::string reason = unmetNeed(line.panel, command.needs);
    if (usage.ends_with("INDEX") || usage.ends_with("ROW") || usage.ends_with("0/1")) {
        std::optional<int> number = integerIn(argument);
        line.number = number.value_or(0);
        if (reason.empty() && !number)
            reason = usage;
    }
    return reason.empty() ? command.run(line) : errorAnswer(reason);
}

} // namespace

bool modalWindowIsOpen()
{
    return [[NSApp modalWindow] isVisible] != 0;
}

void wakeModalLoop()
{
    NSEvent* event = [NSEvent otherEventWithType:NSApplicationDefined
                                        location:NSZeroPoint
                                   modifierFlags:0
                                       timestamp:0
                                    windowNumber:0
                                         context:nil
                                         subtype:0
                                           data1:0
                                           data2:0];
    [NSApp postEvent:event atStart:NO];
}

Json runScriptLine(DialogController* dialog, const std::string& line)
{
    std::string argument = line;
    std::string name = takeWord(argument);
    for (const Command& command : kCommands) {
        std::string usage = command.usage;
        if (name != takeWord(usage))
            continue;
        @try {
            return carryOut(command, dialog, argument);
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
    return rowAnswer([dialog panel], takeWord(field));
}
