// What keys do in the profile window and in its name fields.
#include "../bench/HostedPanel.h"
#include "profilewindow/KeyFilters.h"
#include "profilewindow/ProfileControl+Private.h"
#include "support/Sandbox.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace {

struct Rules {
    int key, maxLen, maxExtension;
};

/// What a field should hold after each edit, stated without the field's own code but for the filters.
class Model {
public:
    explicit Model(Rules r) : rules_(r) {}

    /// `length` units at `start` were replaced by `input`.
    void edit(size_t start, size_t length, const std::u16string& input)
    {
        std::u16string now = text;
        now.replace(start, length, input);
        caret = start + input.size();
        if (breaksTheRules(now)) {
            caret = caret + text.size() - now.size();
            return;
        }
        text.clear();
        size_t kept = 0;
        for (size_t i = 0; i < now.size(); ++i) {
            if (!FilterEditTextInputKey(rules_.key, now[i]))
                continue;
            text += now[i];
            kept += i < caret;
        }
        caret = kept;
    }
    /// `index`, or the one behind it when a surrogate pair would be cut there.
    size_t outsidePair(size_t index) const
    {
        return index < text.size() && text[index] >= 0xDC00 && text[index] <= 0xDFFF ? index + 1 : index;
    }
    bool usable() const { return !text.empty() && text[0] != u'.'; }

    std::u16string text;
    size_t caret = 0;

private:
    bool breaksTheRules(const std::u16string& now) const
    {
        int n = int(now.size()), base = int(std::min(now.find(u'.'), now.size()));
        if (rules_.maxExtension < 1)
            return n > rules_.maxLen;
        return n > rules_.maxLen || base > rules_.maxLen - rules_.maxExtension - 1 ||
               n - base - 1 > rules_.maxExtension || std::count(now.begin(), now.end(), u'.') > 1;
    }
    Rules rules_;
};

NSString* ns(const std::u16string& text)
{
    return [NSString stringWithCharacters:(const unichar*)text.data() length:text.size()];
}

std::string shown(NSString* text, NSRange caret, bool enabled)
{
    return std::string([text UTF8String]) + " | " + std::to_string(caret.location) + "+" +
           std::to_string(caret.length) + (enabled ? " enabled" : " disabled");
}

/// The window of a panel without lists and without a helper, on the screen but not in a modal run.
class ProfileKeys : public ::testing::Test {
protected:
    void SetUp() override
    {
        [hosted.panel() panelView];
        control = hosted.part(@"profileControl");
        window = part(@"_profileManagementWindow");
        field = part(@"_fileNameEdit");
        [control initWithProfileControl];
        [window makeKeyAndOrderFront:nil];
    }
    void TearDown() override { [window orderOut:nil]; }

    id part(NSString* outlet) { return [(NSObject*)control valueForKey:outlet]; }
    NSTextView* editor() { return (NSTextView*)[field currentEditor]; }

    /// Through the queue, which makes it the current event.
    void press(NSString* key)
    {
        [NSApp postEvent:[NSEvent keyEventWithType:NSKeyDown
                                                location:NSZeroPoint
                                           modifierFlags:0
                                               timestamp:++events
                                            windowNumber:[window windowNumber]
                                                 context:nil
                                              characters:key
                             charactersIgnoringModifiers:key
                                               isARepeat:NO
                                                 keyCode:0]
                 atStart:YES];
        [NSApp sendEvent:[NSApp nextEventMatchingMask:NSKeyDownMask
                                            untilDate:[NSDate distantFuture]
                                               inMode:NSDefaultRunLoopMode
                                              dequeue:YES]];
    }
    void type(const std::u16string& keys)
    {
        for (char16_t key : keys)
            press(ns({key}));
    }

    /// Begins an edit of a field with these rules.
    void use(Rules rules)
    {
        [control profileCancel:nil];
        [field setMaxLength:rules.maxLen extension:rules.maxExtension];
        [field setInputKey:rules.key];
        [control addButton:nil];
    }
    std::string state()
    {
        EXPECT_TRUE([[field stringValue] isEqualToString:[editor() string]]);
        return shown([field stringValue], [editor() selectedRange], [part(@"_localOK") isEnabled]);
    }

    Sandbox sandbox;
    ScopedVariable root{"PDE_ROOT", sandbox.path().string()};
    HostedPanel hosted;
    ProfileControl* control = nil;
    NSWindow* window = nil;
    VelTextField* field = nil;
    double events = 0;
};

constexpr Rules kFileName{1, 31, 3};

/// The codes from -200 to 0x110000 from which on the next are accepted, or refused again.
std::string changesOf(int32_t inputkey)
{
    std::string changes;
    for (int32_t code = -200, before = 0; code <= 0x110000; ++code)
        if (FilterEditTextInputKey(inputkey, code) != before) {
            before = !before;
            changes += std::to_string(code) + " ";
        }
    return changes;
}

} // namespace

TEST_F(ProfileKeys, EndAnEditAndTickTheSelectedProfileAndLeaveNoModalRunBehind)
{
    NSTableView* table = part(@"_profileTableView");
    auto ticked = [&] {
        NSTableColumn* column = [table tableColumnWithIdentifier:@"inmenu"];
        return [[[table dataSource] tableView:table objectValueForTableColumn:column row:0] intValue];
    };
    auto expect = [&](int mode, NSInteger rows) {
        EXPECT_TRUE([window isVisible]);
        EXPECT_EQ([part(@"buttonIdentify") intValue], mode);
        EXPECT_EQ([table numberOfRows], rows);
    };
    [control addButton:nil];
    type(u"\r\t");
    EXPECT_EQ([window firstResponder], part(@"_browse"));
    type(u"\r");
    expect(kAdding, 0); // there is no name yet
    [window makeFirstResponder:field];
    type(u"zz.icc\r");
    expect(kBrowsing, 1);
    [control addButton:nil];
    type(u"x\033");
    expect(kBrowsing, 1);

    [window makeFirstResponder:table];
    type(u" ");
    EXPECT_EQ(ticked(), 1) << "none is selected";
    [table selectRowIndexes:[NSIndexSet indexSetWithIndex:0] byExtendingSelection:NO];
    type(u" ");
    EXPECT_EQ(ticked(), 0);
    [control addButton:nil];
    [window makeFirstResponder:table];
    type(u" ");
    EXPECT_EQ(ticked(), 0) << "an edit holds the selection";
    // The toolkit ends a window's own run by itself once the window is gone.
    NSModalSession run = [NSApp beginModalSessionForWindow:[NSOpenPanel openPanel]];
    EXPECT_FALSE([control windowShouldClose:window]);
    EXPECT_EQ([NSApp runModalSession:run], NSRunStoppedResponse);
    [NSApp endModalSession:run];
}

TEST_F(ProfileKeys, EditANameByItsRulesWhateverIsSetTypedAndPasted)
{
    use(kFileName);
    type(u"a");
    [control setText:@"browsed.icc" ofField:field];
    [editor() setSelectedRange:NSMakeRange(1, 0)];
    type(u".");
    EXPECT_EQ(state(), "browsed.icc | 1+0 enabled");

    const std::u16string alphabet[] = {u"a", u"Z", u"7", u"b", u".",      u".",          u" ",
                                       u"@", u"+", u"~", u"%", u"\u00E9", u"\U0001F600", u"\""};
    NSPasteboard* pasteboard = [NSPasteboard generalPasteboard];
    std::mt19937 random(1);
    auto below = [&](size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(random); };
    for (const Rules& rules : {kFileName, Rules{0, 30, 0}, Rules{1, 8, 2}, Rules{2, 6, 0}, Rules{3, 5, 1},
                               Rules{9, 7, 3}, Rules{9, 5, -1}, Rules{0, 0, 0}}) {
        use(rules);
        Model model(rules);
        for (int step = 0; step < 40; ++step) {
            size_t start = model.outsidePair(below(model.text.size() + 1));
            size_t end = below(3) == 0 ? start + below(model.text.size() - start + 1) : start;
            size_t length = model.outsidePair(end) - start;
            size_t kind = below(8);
            std::u16string input;
            for (size_t n = kind == 0 ? 0 : kind < 6 ? 1 : below(9); n > 0; --n)
                input += alphabet[below(std::size(alphabet))];
            if (input.empty() && length == 0)
                continue;
            std::string before = state();
            [editor() setSelectedRange:NSMakeRange(start, length)];
            model.edit(start, length, input);
            if (kind < 6) {
                press(input.empty() ? @"\177" : ns(input));
            } else {
                [pasteboard declareTypes:@[ NSStringPboardType ] owner:nil];
                [pasteboard setString:ns(input) forType:NSStringPboardType];
                [editor() paste:nil];
            }
            ASSERT_EQ(state(), shown(ns(model.text), NSMakeRange(model.caret, 0), model.usable()))
                << "key " << rules.key << " length " << rules.maxLen << " edit of '" << before << "' at "
                << start << "+" << length << " '" << [ns(input) UTF8String] << "' kind " << kind;
        }
    }
}

TEST(KeyFilters, AcceptExactlyTheirCodes)
{
    EXPECT_EQ(changesOf(0), "-128 -127 32 127 ");
    EXPECT_EQ(changesOf(1), "-128 -127 33 34 35 42 45 47 48 58 65 91 94 124 125 127 ");
    EXPECT_EQ(changesOf(2), "48 58 65 91 97 123 ");
    EXPECT_EQ(changesOf(3), "48 58 ");
    for (int32_t other : {4, -1, 255})
        EXPECT_EQ(changesOf(other), "-200 34 35 43 44 ") << other;
}

TEST(KeyFilters, ReadAPairFromEitherHalfButAdvanceByOneUnit)
{
    const char16_t text[] = {u'a', 0xD83D, 0xDE00, u'b', 0xDBFF, 0xDFFF, 0xD800};
    const int32_t codes[] = {'a', 0x1F600, 0x90000 + 'b', 'b', 0x10FFFF, 0x10FC00, 0x10000};
    for (size_t i = 0, next = 99; i < std::size(text); i = next) {
        EXPECT_EQ(UCFindComposedCharAtIndex(text, std::size(text), i, &next), codes[i]) << i;
        EXPECT_EQ(next, i + 1);
    }
}
