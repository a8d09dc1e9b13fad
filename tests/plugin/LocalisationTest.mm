// The texts of the panel, in the language of the process (LANGUAGE): CTest runs this once for each. What is
// measured is the real bundle's panel and window after the panel has put its texts there.
#include "../bench/HostedPanel.h"
#include "support/Sandbox.h"

#import <AppKit/AppKit.h>
#include <cstdlib>
#include <gtest/gtest.h>
#include <regex>
#include <set>

namespace {

using Texts = std::set<std::string>;

NSDictionary* tableOf(const std::string& room, const std::string& language)
{
    std::string path = PDE_SOURCE_DIR + room + "/Resources/" + language + ".lproj/Localizable.strings";
    return [[NSString stringWithContentsOfFile:[NSString stringWithUTF8String:path.c_str()]
                                      encoding:NSUTF8StringEncoding
                                         error:nullptr] propertyListFromStringsFileFormat];
}

Texts setOf(id<NSFastEnumeration> texts)
{
    Texts set;
    for (NSString* text in texts)
        set.insert([text UTF8String]);
    return set;
}

class Panel : public ::testing::Test {
protected:
    void take(NSString* text, NSSize need = NSZeroSize, NSSize have = NSZeroSize)
    {
        if ([text length] > 0)
            shown_.insert([text UTF8String]);
        EXPECT_LE(need.width, have.width) << [text UTF8String];
        EXPECT_LE(need.height, have.height) << [text UTF8String];
    }

    /// All texts of `view` and below it, those of hidden tabs too.
    void takeAll(NSView* view)
    {
        NSSize have = [view frame].size, labels = NSZeroSize;
        if ([view isKindOfClass:[NSTabView class]]) {
            for (NSTabViewItem* item in [(NSTabView*)view tabViewItems]) {
                labels.width += [item sizeOfLabel:NO].width + 24; // the slanted edges
                take([item label], labels, have);
                takeAll([item view]);
            }
            return;
        }
        if ([view isKindOfClass:[NSTableView class]])
            for (NSTableColumn* column in [(NSTableView*)view tableColumns]) {
                NSCell* header = [column headerCell];
                take([header title], [header cellSize], NSMakeSize([column width], have.height));
            }
        else if ([view isKindOfClass:[NSBox class]])
            take([(NSBox*)view title], [[(NSBox*)view titleCell] cellSize], have);
        else if ([view isKindOfClass:[NSControl class]] && ![view isKindOfClass:[NSPopUpButton class]])
            take([[(NSControl*)view cell] title], [[(NSControl*)view cell] cellSize], have);
        for (NSView* below in [view subviews])
            takeAll(below);
    }

    HostedPanel hosted_;
    Texts shown_;
};

TEST_F(Panel, ShowsEveryTextOfItsLanguageAndNoOtherAndCutsNone)
{
    [hosted_.panel() restoreValuesAndReturnError:nullptr];
    id profiles = hosted_.part(@"profileControl");
    NSPopUpButton* lists = [profiles valueForKey:@"_profileMenu"];
    for (NSView* root in @[
             hosted_.part(@"onColorView"), hosted_.part(@"onAdvancedView"),
             [[profiles valueForKey:@"_profileManagementWindow"] contentView]
         ])
        takeAll(root);
    for (NSString* list in [lists itemTitles]) {
        [lists selectItemWithTitle:list];
        take(list, [[lists cell] cellSize], [lists frame].size);
    }
    take([hosted_.panel() panelName]);
    NSArray* names = [[hosted_.panel() summaryInfo] objectForKey:@"Summary Display Order"];
    EXPECT_EQ(setOf(names).size(), 26u) << "each row has a name of its own";
    shown_.merge(setOf(names));
    // Seen with the profiles of a printer only.
    NSBundle* bundle = [NSBundle bundleForClass:[(id)hosted_.panel() class]];
    for (NSString* key in @[ @"ProfileTitle", @"On the printer", @"Disk", @"Card" ])
        take([bundle localizedStringForKey:key value:nil table:nil]);
    std::string language = getenv("LANGUAGE");
    NSDictionary* table = tableOf("/PDE_COL", language == "zh_CN" ? "zh-Hans" : language);
    EXPECT_EQ(shown_, setOf([table allValues]));
}

TEST(Dialog, HasEachOfItsTextsInEveryLanguage)
{
    Texts wanted;
    const std::regex lookup(R"re(localized\(@"((?:[^"\\]|\\.)*)")re");
    for (const auto& source : std::filesystem::directory_iterator(PDE_SOURCE_DIR "/host/dialog")) {
        std::string code = readFile(source.path());
        for (std::sregex_iterator found(code.begin(), code.end(), lookup), end; found != end; ++found)
            wanted.insert(std::regex_replace((*found)[1].str(), std::regex(R"(\\")"), "\""));
    }
    for (const char* language : {"de", "es", "fr", "it", "ja", "zh-Hans"}) {
        NSDictionary* table = tableOf("/host", language);
        EXPECT_EQ(wanted, setOf(table)) << language;
        EXPECT_EQ([[table allKeysForObject:@""] count], 0u) << language;
    }
}

} // namespace
