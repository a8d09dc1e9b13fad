// The texts of the panel, in the language of the process (LANGUAGE): CTest runs this once for each. What is
// measured is the real bundle's panel and window after the panel has put its texts there.
#include "support/PanelHarness.h"

#import <AppKit/AppKit.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <regex>
#include <set>

namespace fs = std::filesystem;

static const char* const kResources = PDE_SOURCE_DIR "/PDE_COL/Resources";

namespace {

std::string text(NSString* s)
{
    return s == nil ? "(nil)" : [s UTF8String];
}

NSDictionary* tableOf(const std::string& language, const std::string& folder = kResources)
{
    std::string path = folder + "/" + language + ".lproj/Localizable.strings";
    return [[NSString stringWithContentsOfFile:[NSString stringWithUTF8String:path.c_str()]
                                      encoding:NSUTF8StringEncoding
                                         error:nullptr] propertyListFromStringsFileFormat];
}

std::string currentLanguage()
{
    const char* name = getenv("LANGUAGE");
    std::string language = name != nullptr ? name : "en";
    return language == "zh_CN" ? "zh-Hans" : language;
}

std::set<std::string> keysOf(NSDictionary* table)
{
    std::set<std::string> keys;
    for (NSString* key in table)
        keys.insert(text(key));
    return keys;
}

/// All views of `view` and below it, those of hidden tabs too.
void collect(NSView* view, std::vector<NSView*>& views)
{
    views.push_back(view);
    if ([view isKindOfClass:[NSTabView class]])
        for (NSTabViewItem* item in [(NSTabView*)view tabViewItems])
            collect([item view], views);
    else
        for (NSView* below in [view subviews])
            collect(below, views);
}

class Panel : public ::testing::Test {
protected:
    void SetUp() override
    {
        [harness_.panel() supportedPPDOptionKeys];
        id profiles = harness_.outlet("profileControl");
        NSWindow* window = [profiles valueForKey:@"_profileManagementWindow"];
        listMenu_ = [profiles valueForKey:@"_profileMenu"];
        table_ = [profiles valueForKey:@"_profileTableView"];
        for (NSView* root : {(NSView*)harness_.outlet("onColorView"),
                             (NSView*)harness_.outlet("onAdvancedView"), (NSView*)[window contentView]})
            collect(root, views_);
        ASSERT_GT(views_.size(), 80u);
    }
    /// The text that a view shows of its own, or nil.
    static NSString* title(NSView* view)
    {
        if ([view isKindOfClass:[NSPopUpButton class]])
            return nil;
        if ([view isKindOfClass:[NSButton class]])
            return [(NSButton*)view title];
        if ([view isKindOfClass:[NSTextField class]] && ![(NSTextField*)view isEditable])
            return [(NSTextField*)view stringValue];
        return [view isKindOfClass:[NSBox class]] ? [(NSBox*)view title] : nil;
    }

    /// Every row of both views' tables.
    template <typename Use>
    void forEachRow(Use use)
    {
        for (PDEControlItem* table : {harness_.colorTable(), harness_.advancedTable()})
            for (PDEControlItem* row = table; row->control != nil; ++row)
                use(*row);
    }

    PanelHarness harness_;
    NSPopUpButton* listMenu_ = nil;
    NSTableView* table_ = nil;
    std::vector<NSView*> views_;
};

TEST(Languages, HaveTheSameKeysAndNoEmptyText)
{
    std::set<std::string> english = keysOf(tableOf("en"));
    int languages = 0;
    for (const fs::directory_entry& folder : fs::directory_iterator(kResources)) {
        if (folder.path().extension() != ".lproj")
            continue;
        ++languages;
        NSDictionary* table = tableOf(folder.path().stem());
        EXPECT_EQ(english, keysOf(table)) << folder.path();
        for (NSString* key in table)
            EXPECT_GT([[table objectForKey:key] length], 0u) << folder.path() << text(key);
    }
    EXPECT_EQ(7, languages);
}

TEST(Languages, HaveEveryTextOfTheDialog)
{
    std::set<std::string> wanted;
    for (const fs::directory_entry& source : fs::directory_iterator(PDE_SOURCE_DIR "/host/dialog")) {
        std::ifstream file(source.path());
        std::string code{std::istreambuf_iterator<char>(file), {}};
        std::regex lookup(R"re(localized\(@"((?:[^"\\]|\\.)*)")re");
        for (std::sregex_iterator found(code.begin(), code.end(), lookup), end; found != end; ++found)
            wanted.insert(std::regex_replace((*found)[1].str(), std::regex(R"(\\")"), "\""));
    }
    EXPECT_GT(wanted.size(), 60u);
    for (const char* language : {"de", "es", "fr", "it", "ja", "zh-Hans"})
        EXPECT_EQ(wanted, keysOf(tableOf(language, PDE_SOURCE_DIR "/host/Resources"))) << language;
}

TEST_F(Panel, FindsEveryTextThatItLooksUpAndTellsTheRowsOfTheSummaryApart)
{
    NSDictionary* table = tableOf(currentLanguage());
    std::set<std::string> keys = keysOf(table), names;
    for (const char* key : {"Color Options", "ProfileTitle", "Disk", "Card", "RGB", "SIM", "DST", "Image",
                            "Text", "Graphics", "Simulation"})
        EXPECT_TRUE(keys.contains(key)) << key;
    forEachRow([&](const PDEControlItem& row) {
        EXPECT_TRUE(row.title == nullptr || keys.contains(row.title)) << row.title;
        if (row.summaryName == nullptr)
            return;
        NSString* name = [table objectForKey:[NSString stringWithUTF8String:row.summaryName]];
        EXPECT_TRUE(names.insert(text(name)).second) << row.summaryName;
    });
    EXPECT_FALSE(names.empty());
}

TEST_F(Panel, ShowsNoTextInAnotherLanguage)
{
    NSArray* texts = [tableOf(currentLanguage()) allValues];
    for (NSView* view : views_) {
        NSString* shown = title(view);
        if ([shown length] > 0)
            EXPECT_TRUE([texts containsObject:shown]) << text(shown);
        if ([view isKindOfClass:[NSTabView class]])
            for (NSTabViewItem* item in [(NSTabView*)view tabViewItems])
                EXPECT_TRUE([texts containsObject:[item label]]) << text([item label]);
    }
    for (NSTableColumn* column in [table_ tableColumns]) {
        NSString* header = [[column headerCell] stringValue];
        EXPECT_TRUE([header length] == 0 || [texts containsObject:header]) << text(header);
    }
    for (NSString* list in [listMenu_ itemTitles])
        EXPECT_TRUE([texts containsObject:list]) << text(list);
    EXPECT_TRUE([texts containsObject:[harness_.panel() panelName]]);
}

TEST_F(Panel, CutsNoText)
{
    for (NSView* view : views_) {
        NSSize have = [view frame].size, need = NSZeroSize;
        if ([view isKindOfClass:[NSControl class]] && title(view) != nil)
            need = [[(NSControl*)view cell] cellSize];
        else if ([view isKindOfClass:[NSBox class]] && title(view) != nil)
            need = [[(NSBox*)view titleCell] cellSize];
        else if ([view isKindOfClass:[NSTabView class]])
            for (NSTabViewItem* item in [(NSTabView*)view tabViewItems])
                need.width += [item sizeOfLabel:NO].width + 24; // the slanted edges
        EXPECT_LE(need.width, have.width) << text(title(view));
        EXPECT_LE(need.height, have.height) << text(title(view));
    }
    for (NSTableColumn* column in [table_ tableColumns])
        EXPECT_LE([[column headerCell] cellSize].width, [column width])
            << text([[column headerCell] stringValue]);
    EXPECT_EQ(3, [listMenu_ numberOfItems]);
    for (NSInteger i = 0; i < [listMenu_ numberOfItems]; ++i) {
        [listMenu_ selectItemAtIndex:i];
        EXPECT_LE([[listMenu_ cell] cellSize].width, [listMenu_ frame].size.width);
    }
}

} // namespace
