// What the panel keeps in the print settings, and the profiles of a list file in its menus.
#include "../bench/HostedPanel.h"
#include "panels/ControlTableView.h"
#include "profiles/ListFixture.h"
#include "profiles/ProfilePath.h"
#include "support/SamplePpd.h"

#include <optional>

namespace {

using Values = std::vector<int>;
using Titles = std::vector<std::string>;

class Settings : public ListFixture {
protected:
    void open(const std::string& ppd = samplePpd())
    {
        hosted.emplace(sandbox.write("printer.ppd", ppd));
        [hosted->panel() supportedPPDOptionKeys];
        color = hosted->part(@"onColorView");
        advanced = hosted->part(@"onAdvancedView");
        for (NSString* name in
             @[ @"menu_QuickColor", @"menu_Brightness", @"check_EconomyPrint", @"menu_EdgeStrength" ])
            controls.push_back([color valueForKey:name]);
        source = [advanced valueForKey:@"menu_iRGBSource"];
    }
    NSMutableDictionary* values() { return [hosted->settings() values]; }
    NSDictionary* queue() { return [[values() objectForKey:@"R4270"] objectForKey:@"Test_Queue"]; }

    void save(const Values& chosen)
    {
        for (size_t i = 0; i < chosen.size(); ++i)
            if (i == 2)
                [controls[i] setIntValue:chosen[i]];
            else
                [controls[i] selectItemAtIndex:chosen[i]];
        [hosted->panel() saveValuesAndReturnError:nullptr];
    }
    /// The values that the settings give the controls, which have others before.
    Values restored()
    {
        Values values;
        [color getControlValueFromTicket];
        for (size_t i = 0; i < controls.size(); ++i)
            values.push_back((int)(i == 2 ? [controls[i] intValue] : [controls[i] indexOfSelectedItem]));
        return values;
    }

    void keep(const std::vector<ProfileRecord>& rgb, const std::vector<ProfileRecord>& sim = {},
              const std::vector<ProfileRecord>& dst = {})
    {
        writeListFile(listFileText(listOf(rgb), listOf(sim), listOf(dst)));
    }
    /// The titles behind the four choices that the PPD has for each of these.
    Titles profilesIn(NSString* menu)
    {
        Titles titles;
        for (NSMenuItem* item in [(NSPopUpButton*)[advanced valueForKey:menu] itemArray])
            titles.push_back([[item title] UTF8String]);
        titles.erase(titles.begin(), titles.begin() + kChoices);
        return titles;
    }
    /// Chooses the profile at this position, from 1, and saves; gives one of the queue's entries.
    std::string saved(NSInteger position, NSString* key = @"")
    {
        [source selectItemAtIndex:kChoices + position - 1];
        [advanced setControlValueToTicket];
        EXPECT_EQ([values() objectForKey:key], [queue() objectForKey:key]);
        return [[queue() objectForKey:key] UTF8String] ?: "";
    }
    /// The item that the settings select, as a position.
    NSInteger position()
    {
        [source selectItemAtIndex:0];
        [advanced getControlValueFromTicket];
        return [source indexOfSelectedItem] - kChoices + 1;
    }

    static constexpr int kChoices = 4;
    static constexpr NSInteger kDefault = -2; ///< sRGB, the second choice, as a position
    std::optional<HostedPanel> hosted;
    ControlTableView *color = nil, *advanced = nil;
    std::vector<id> controls;
    NSPopUpButton* source = nil;
};

} // namespace

TEST_F(Settings, KeepChoicesUnderModelAndQueueAndAtTheTop)
{
    open();
    NSDictionary* other = @{@"VelBrightness" : @"Darker"};
    [hosted->settings() replaceValues:@{@"Copies" : @3, @"R4270" : @{@"Other" : other}}];
    save({1, 0, 0, 1});
    save({1, 4, 1, 3});
    NSMutableDictionary* expected = [NSMutableDictionary dictionaryWithDictionary:queue()];
    [expected setObject:@3 forKey:@"Copies"];
    [expected setObject:@{@"Other" : other, @"Test_Queue" : queue()} forKey:@"R4270"];
    EXPECT_TRUE([values() isEqual:expected]) << [[values() description] UTF8String];
    EXPECT_TRUE(([[queue() objectsForKeys:@[ @"VelQuickColor", @"VelBrightness", @"VelEconoMode" ]
                           notFoundMarker:@""] isEqual:@[ @"Photo", @"Darkest", @"True" ]]));
    EXPECT_EQ(restored(), (Values{1, 4, 1, 3}));
}

TEST_F(Settings, GiveBackWhatThePpdKnowsAndElseTheValueBefore)
{
    open();
    struct Case {
        NSDictionary* stored;
        Values restored;
    };
    NSDictionary* elsewhere = @{@"VelBrightness" : @"Darker"};
    for (const Case& c : {
             // From 1, 1, 1, 1. An absent key gives the default, what is no choice leaves the control.
             Case{@{}, {0, 2, 0, 2}},
             Case{@{@"VelQuickColor" : @"photo", @"VelBrightness" : @"Darker"}, {1, 3, 0, 2}},
             Case{@{@"VelEconoMode" : @"TRUE"}, {0, 2, 1, 2}},
             Case{@{@"VelEconoMode" : @"true"}, {0, 2, 1, 2}},
             Case{@{@"VelEconoMode" : @"tRUE"}, {0, 2, 0, 2}},
             Case{@{@"VelEconoMode" : @"1"}, {0, 2, 0, 2}},
             // What is no text takes over the value of the row before; the first has none before it.
             Case{@{@"VelQuickColor" : @"LineArt", @"VelBrightness" : @7}, {2, 2, 0, 2}},
             Case{@{@"VelQuickColor" : @[], @"VelBrightness" : @"No"}, {1, 1, 0, 2}},
             // An entry of the model's own name would take the place of all queues' choices.
             Case{@{@"R4270" : @{@"Q" : @"x"}, @"VelQuickColor" : @"Photo"}, {1, 2, 0, 2}},
         }) {
        save({1, 1, 1, 1});
        [hosted->settings() replaceValues:@{@"R4270" : @{@"Test_Queue" : c.stored, @"Other" : elsewhere}}];
        EXPECT_EQ(restored(), c.restored) << [[c.stored description] UTF8String];
        EXPECT_TRUE([[[values() objectForKey:@"R4270"] objectForKey:@"Other"] isEqual:elsewhere]);
    }
    for (NSDictionary* stored in
         @[ @{@"R4270" : @5},
            @{@"R4270" : @[]},
            @{@"R4270" : @{@"Test_Queue" : @"text"}} ]) {
        [hosted->settings() replaceValues:stored];
        save({1, 1, 1, 1});
        EXPECT_EQ(restored(), (Values{1, 1, 1, 1}));
        EXPECT_TRUE([values() isEqual:stored]) << [[values() description] UTF8String];
    }
}

TEST_F(Settings, TakeAndTellNothingOfAControlWithoutAValue)
{
    open(replaced(samplePpd(), "*VelEconoMode False/Off: \"userdict /VelEconoMode false put\"\n", ""));
    save({3, -1, 0, 1});
    EXPECT_EQ([values() objectForKey:@"VelBrightness"], nil);
    EXPECT_EQ([values() objectForKey:@"VelEconoMode"], nil);
    NSMutableDictionary* dict = [NSMutableDictionary dictionary];
    NSMutableArray* order = [NSMutableArray array];
    [color getSummaryText:dict addArray:order];
    EXPECT_TRUE(([order isEqual:@[ @"Quick Color", @"Color as Grayscale", @"Edge Type" ]]));
    EXPECT_TRUE(([dict
        isEqual:@{@"Quick Color" : @"Custom", @"Color as Grayscale" : @"Off", @"Edge Type" : @"Light"}]));
}

TEST_F(Settings, ShowTheListedProfilesOfEachListAndOneItemATitle)
{
    // A choice of the PPD keeps its place beside a profile's item with the same title.
    open(replaced(samplePpd(), "sRGB/sRGB:", "sRGB/odd.icc(Profile 9)Disk:"));
    EXPECT_EQ(profilesIn(@"menu_iRGBSource"), Titles());
    keep({record(kFoundListed, "a.icc"), record(kGoneHidden), record(kFoundHidden), record(kByHandHidden),
          record(kGoneListed, "gone.icc", kOnCard), record(kByHandListed, "hand.icc", 0),
          record(9, "odd.icc"), record(kFoundListed, "a.icc")},
         {record(kFoundListed, "sim.icc")}, {record(kFoundListed, "dst.icc")});
    for (int again = 0; again < 2; ++again) {
        [advanced createPDEItemForPPDKey];
        EXPECT_EQ(profilesIn(@"menu_iRGBSource"), (Titles{"gone.icc(Profile 3)Card", "hand.icc(Profile 6)",
                                                          "odd.icc(Profile 9)Disk", "a.icc(Profile 4)Disk"}));
        EXPECT_EQ(profilesIn(@"menu_sSimulationProfile"), Titles{"sim.icc(Profile 4)Disk"});
        EXPECT_EQ(profilesIn(@"menu_iDestinationProfile"), Titles{"dst.icc(Profile 4)Disk"});
        EXPECT_EQ(profilesIn(@"menu_iHalftone"), Titles());
    }
    EXPECT_STREQ([[source itemTitleAtIndex:1] UTF8String], "odd.icc(Profile 9)Disk");
}

TEST_F(Settings, TakeFullListsAndNamesThatWereCutInsideACharacter)
{
    open();
    std::vector<ProfileRecord> full;
    for (int i = 0; i < kProfileSlots; ++i)
        full.push_back(record(kFoundListed, "p" + std::to_string(i) + ".icc"));
    // 30 bytes, then the first half of a character.
    setNameText(full[7].FileName, std::string(30, 'a') + "\u00e9");
    keep(full);
    [advanced createPDEItemForPPDKey];
    ASSERT_EQ(profilesIn(@"menu_iRGBSource").size(), (size_t)kProfileSlots);
    EXPECT_EQ(profilesIn(@"menu_iRGBSource")[7], std::string(30, 'a') + "(Profile 4)Disk");
    for (NSInteger one : {1, 8, kProfileSlots}) {
        saved(one);
        EXPECT_EQ(position(), one);
    }
}

TEST_F(Settings, KeepAProfilesCodedPathAndFlagAndFindOnlyWhatIsListed)
{
    open();
    std::vector<ProfileRecord> list = {record(kGoneListed, "place.icc", 0), record(kByHandHidden, "b.icc"),
                                       record(kFoundListed, "c.icc", kOnCard)};
    keep(list);
    [advanced createPDEItemForPPDKey];
    std::string coded = encodePrinterPath("/ataCf1a/data/USfiles/Profiles/c.icc");
    EXPECT_EQ(coded.substr(0, 4), "2?61");
    // A choice of the PPD takes the flag back and leaves the path.
    for (NSInteger one : {2, 0}) {
        EXPECT_EQ(saved(one, @"VelImageRGBSourceCustomFilename"), coded);
        EXPECT_EQ(saved(one, @"VelImageRGBSourceCustom"), one > 0 ? "True" : "False");
        EXPECT_EQ(saved(one, @"VelSimSourceCustom"), "False");
        EXPECT_EQ(saved(one, @"VelImageHalftoneCustom"), "");
        EXPECT_EQ(position(), one);
    }
    EXPECT_EQ(saved(2, @"VelImageRGBSource"), "None");
    for (int32_t change : {(int32_t)kFoundHidden, 9}) {
        list[2].InMenu = change;
        keep(list);
        EXPECT_EQ(position(), kDefault) << change;
    }
    EXPECT_EQ(saved(2, @"VelImageRGBSourceCustomFilename"), "") << "it is no longer listed";
    // No known place on the printer: it has a position and is never found again.
    saved(1);
    EXPECT_EQ(position(), kDefault);
    std::filesystem::remove(currentListPath());
    EXPECT_EQ(position(), kDefault);
    NSString* endless = [@"" stringByPaddingToLength:100000 withString:@"2" startingAtIndex:0];
    for (id path in @[ @"", @7, @[], @{}, @"x", @"éé", endless, @"??" ]) {
        NSDictionary* stored =
            @{@"VelImageRGBSourceCustom" : @"True", @"VelImageRGBSourceCustomFilename" : path};
        [hosted->settings() replaceValues:@{@"R4270" : @{@"Test_Queue" : stored}}];
        EXPECT_EQ(position(), kDefault) << [[path description] UTF8String];
    }
}
