#include "profilewindow/VelTextField.h"

#include "profilewindow/KeyFilters.h"

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
        int n = int(now.size()), first = int(now.find(u'.')),
            stops = int(std::count(now.begin(), now.end(), u'.'));
        if (rules_.maxExtension < 1)
            return n > rules_.maxLen;
        int base = stops == 0 ? n : first;
        int extension = stops == 0 ? 0 : n - first - 1;
        return n > rules_.maxLen || base > rules_.maxLen - rules_.maxExtension - 1 || stops > 1 ||
               extension > rules_.maxExtension;
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

/// A field in a window on the screen, edited through its field editor as a person's keys are.
class VelTextFieldTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        pool_ = [[NSAutoreleasePool alloc] init];
        window_ = [[NSWindow alloc] initWithContentRect:NSMakeRect(50, 50, 400, 100)
                                              styleMask:NSTitledWindowMask
                                                backing:NSBackingStoreBuffered
                                                  defer:NO];
        [window_ setReleasedWhenClosed:NO];
        field_ = [[[VelTextField alloc] initWithFrame:NSMakeRect(10, 50, 380, 24)] autorelease];
        button_ = [[[NSButton alloc] initWithFrame:NSMakeRect(10, 10, 80, 24)] autorelease];
        [[window_ contentView] addSubview:field_];
        [[window_ contentView] addSubview:button_];
        [window_ makeKeyAndOrderFront:nil];
    }
    void TearDown() override
    {
        [window_ makeFirstResponder:nil];
        [window_ close];
        [window_ release];
        [pool_ drain];
    }
    void use(Rules rules)
    {
        [window_ makeFirstResponder:nil];
        [field_ setStringValue:@""];
        [field_ setMaxLength:rules.maxLen extension:rules.maxExtension];
        [field_ setInputKey:rules.key];
        [field_ setOperateControl:button_];
        [button_ setEnabled:NO];
        [window_ makeFirstResponder:field_];
    }
    /// What comes next comes with an event of its own.
    void nextEvent()
    {
        static NSTimeInterval time = 1;
        [NSApp postEvent:[NSEvent otherEventWithType:NSApplicationDefined
                                            location:NSZeroPoint
                                       modifierFlags:0
                                           timestamp:time++
                                        windowNumber:0
                                             context:nil
                                             subtype:0
                                               data1:0
                                               data2:0]
                 atStart:YES];
        [NSApp nextEventMatchingMask:NSApplicationDefinedMask
                           untilDate:[NSDate distantPast]
                              inMode:NSDefaultRunLoopMode
                             dequeue:YES];
        [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:[NSDate distantPast]];
    }
    NSTextView* editor() { return (NSTextView*)[field_ currentEditor]; }
    void paste(NSString* text)
    {
        NSPasteboard* pasteboard = [NSPasteboard generalPasteboard];
        [pasteboard declareTypes:@[ NSStringPboardType ] owner:nil];
        [pasteboard setString:text forType:NSStringPboardType];
        [editor() paste:nil];
    }
    std::string state()
    {
        EXPECT_TRUE([[field_ stringValue] isEqualToString:[editor() string]]);
        return shown([field_ stringValue], [editor() selectedRange], [button_ isEnabled]);
    }

    NSAutoreleasePool* pool_ = nil;
    NSWindow* window_ = nil;
    VelTextField* field_ = nil;
    NSButton* button_ = nil;
};

constexpr Rules kFileName{1, 31, 3};
constexpr Rules kProfileName{0, 30, 0};

} // namespace

TEST_F(VelTextFieldTest, TakesAChangeBackToTheTextSetByItsOwnerAndLeavesTheCaretFree)
{
    use(kFileName);
    [field_ setStringValue:@"owner's.icc"];
    [field_ setOldString:@"owner's.icc"];
    [editor() setSelectedRange:NSMakeRange(1, 0)];
    [field_ setOperateControl:nil];
    [editor() insertText:@"."];
    EXPECT_EQ(state(), "owner's.icc | 1+0 disabled") << "there is no control to enable";
    nextEvent();
    [editor() moveRight:nil];
    EXPECT_EQ(state(), "owner's.icc | 2+0 disabled");
}

TEST_F(VelTextFieldTest, AgreesWithTheRulesOverRandomEdits)
{
    const std::u16string alphabet[] = {u"a", u"Z", u"7", u"b", u".",      u".",          u" ",
                                       u"@", u"+", u"~", u"%", u"\u00E9", u"\U0001F600", u"\""};
    const Rules all[] = {kFileName, kProfileName, {1, 8, 2},  {2, 6, 0},
                         {3, 5, 1}, {9, 7, 3},    {9, 5, -1}, {0, 0, 0}};
    std::mt19937 random(1);
    for (const Rules& rules : all) {
        auto below = [&](size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(random); };
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
            nextEvent();
            [editor() setSelectedRange:NSMakeRange(start, length)];
            model.edit(start, length, input);
            if (input.empty())
                [editor() deleteBackward:nil];
            else if (kind < 6)
                [editor() insertText:ns(input)];
            else
                paste(ns(input));
            ASSERT_EQ(state(), shown(ns(model.text), NSMakeRange(model.caret, 0), model.usable()))
                << "key " << rules.key << " length " << rules.maxLen << " edit of '" << before << "' at "
                << start << "+" << length << " '" << [ns(input) UTF8String] << "' kind " << kind;
        }
    }
}
