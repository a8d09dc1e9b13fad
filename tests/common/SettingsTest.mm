// What the panel keeps in the print settings, the profiles of a list file in its menus, and its end.
#include "../bench/HostedPanel.h"
#include "panels/ControlTableView.h"
#include "plugin/PDEPlugInInterface.h"
#include "profiles/ListFixture.h"
#include "profiles/ProfilePath.h"
#include "support/SamplePpd.h"

#include <optional>

namespace {

using Values = std::vector<int>;

class Settings : public ListFixture {
protected:
    void open(const std::string& ppd = readFile(kPpd))
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
    NSArray* profilesIn(NSString* menu)
    {
        NSArray* titles = [[advanced valueForKey:menu] itemTitles];
        return [titles subarrayWithRange:NSMakeRange(kChoices, [titles count] - kChoices)];
    }
    /// Chooses the profile at this position, from 1, and saves; gives the queue's entries.
    NSDictionary* saved(NSInteger position)
    {
        [source selectItemAtIndex:kChoices + position - 1];
        [advanced setControlValueToTicket];
        return queue();
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

void* pointerIn(id object, const char* name)
{
    void* value = nullptr;
    object_getInstanceVariable(object, name, &value);
    return value;
}

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
    EXPECT_TRUE([[queue() objectForKey:@"VelBrightness"] isEqual:@"Darkest"]);
    EXPECT_EQ(restored(), (Values{1, 4, 1, 3}));
}

TEST_F(Settings, GiveBackWhatThePpdKnowsAndElseTheValueBefore)
{
    open();
    struct {
        NSDictionary* stored;
        Values restored;
    } const cases[] = {
        // From 1, 1, 1, 1. An absent key gives the default, what is no choice leaves the control.
        {@{}, {0, 2, 0, 2}},
        {@{@"VelQuickColor" : @"photo", @"VelBrightness" : @"Darker"}, {1, 3, 0, 2}},
        {@{@"VelEconoMode" : @"TRUE"}, {0, 2, 1, 2}},
        {@{@"VelEconoMode" : @"true"}, {0, 2, 1, 2}},
        {@{@"VelEconoMode" : @"tRUE"}, {0, 2, 0, 2}},
        {@{@"VelEconoMode" : @"1"}, {0, 2, 0, 2}},
        // What is no text takes over the value of the row before; the first has none before it.
        {@{@"VelQuickColor" : @"LineArt", @"VelBrightness" : @7}, {2, 2, 0, 2}},
        {@{@"VelQuickColor" : @[], @"VelBrightness" : @"No"}, {1, 1, 0, 2}},
        // An entry of the model's own name would take the place of all queues' choices.
        {@{@"R4270" : @{@"Q" : @"x"}, @"VelQuickColor" : @"Photo"}, {1, 2, 0, 2}},
    };
    NSDictionary* elsewhere = @{@"VelBrightness" : @"Darker"};
    for (const auto& c : cases) {
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
    open(replaced(readFile(kPpd), "*VelEconoMode False/Off: \"userdict /VelEconoMode false put\"\n", ""));
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
    open(replaced(readFile(kPpd), "sRGB/sRGB:", "sRGB/odd.icc(Profile 9)Disk:"));
    keep({record(kFoundListed, "a.icc"), record(kGoneHidden), record(kFoundHidden), record(kByHandHidden),
          record(kGoneListed, "gone.icc", kOnCard), record(kByHandListed, "hand.icc", 0),
          record(9, "odd.icc"), record(kFoundListed, "a.icc")},
         {record(kFoundListed, "sim.icc")}, {record(kFoundListed, "dst.icc")});
    NSDictionary* expected = @{
        @"menu_iRGBSource" : @[
            @"gone.icc(Profile 3)Card", @"hand.icc(Profile 6)", @"odd.icc(Profile 9)Disk",
            @"a.icc(Profile 4)Disk"
        ],
        @"menu_sSimulationProfile" : @[ @"sim.icc(Profile 4)Disk" ],
        @"menu_iDestinationProfile" : @[ @"dst.icc(Profile 4)Disk" ],
        @"menu_iHalftone" : @[]
    };
    for (int again = 0; again < 2; ++again) {
        [advanced createPDEItemForPPDKey];
        for (NSString* menu in expected)
            EXPECT_TRUE([profilesIn(menu) isEqual:[expected objectForKey:menu]]) << [menu UTF8String];
    }
    EXPECT_STREQ([[source itemTitleAtIndex:1] UTF8String], "odd.icc(Profile 9)Disk");
}

TEST_F(Settings, KeepAProfilesCodedPathAndFlagAndFindOnlyWhatIsListed)
{
    open();
    // The last name is 30 bytes and the first half of a character.
    std::vector<ProfileRecord> list = {record(kGoneListed, "place.icc", 0), record(kByHandHidden, "b.icc"),
                                       record(kFoundListed, "c.icc", kOnCard),
                                       record(kByHandListed, std::string(30, 'a') + "\u00e9")};
    keep(list);
    [advanced createPDEItemForPPDKey];
    EXPECT_EQ([[source itemTitleAtIndex:kChoices + 2] UTF8String], std::string(30, 'a') + "(Profile 6)Disk");
    // A choice of the PPD takes the flag back and leaves the path.
    NSString* path = @(encodePrinterPath("/ataCf1a/data/USfiles/Profiles/c.icc").c_str());
    EXPECT_TRUE([path hasPrefix:@"2?61"]);
    for (NSInteger one : {2, 0}) {
        NSArray* entries = [saved(one) objectsForKeys:@[
            @"VelImageRGBSource", @"VelImageRGBSourceCustomFilename", @"VelImageRGBSourceCustom",
            @"VelSimSourceCustom", @"VelImageHalftoneCustom"
        ]
                                       notFoundMarker:@""];
        EXPECT_TRUE(([entries
            isEqual:@[ one > 0 ? @"None" : @"AdobeRGB", path, one > 0 ? @"True" : @"False", @"False", @"" ]]))
            << [[entries description] UTF8String];
        EXPECT_EQ(position(), one);
    }
    saved(3);
    EXPECT_EQ(position(), 3);
    saved(2);
    for (int32_t change : {(int32_t)kFoundHidden, 9}) {
        list[2].InMenu = change;
        keep(list);
        EXPECT_EQ(position(), kDefault) << change;
    }
    EXPECT_EQ([[saved(3) objectForKey:@"VelImageRGBSourceCustomFilename"] length], 0u) << "not listed now";
    // No known place on the printer: it has a position and is never found again.
    saved(1);
    EXPECT_EQ(position(), kDefault);
    std::filesystem::remove(currentListPath());
    EXPECT_EQ(position(), kDefault);
    NSString* endless = [@"" stringByPaddingToLength:100000 withString:@"2" startingAtIndex:0];
    for (id odd in @[ @"", @7, @[], @{}, @"x", @"éé", endless, @"??" ]) {
        NSDictionary* stored =
            @{@"VelImageRGBSourceCustom" : @"True", @"VelImageRGBSourceCustomFilename" : odd};
        [hosted->settings() replaceValues:@{@"R4270" : @{@"Test_Queue" : stored}}];
        EXPECT_EQ(position(), kDefault) << [[odd description] UTF8String];
    }
}

TEST(Panel, IsLoadedOnceOnDemandAndDoneWithOnceWhicheverWayTheDialogSaysSo)
{
    HostedPanel hosted;
    PDEPlugInInterface* panel = (PDEPlugInInterface*)hosted.panel();
    EXPECT_EQ(hosted.part(@"pdeMainView"), nil);
    NSView* view = [panel panelView];
    [panel supportedPPDOptionKeys];
    EXPECT_EQ([panel panelView], view);
    NSObject* callback = (NSObject*)pointerIn(panel, "pdePluginCallbackObject");
    NSUInteger references = [callback retainCount];
    [panel printWindowWillClose:nil];
    [panel terminate];
    EXPECT_EQ([callback retainCount], references - 1);
    EXPECT_EQ(pointerIn(panel, "compTable"), nullptr);
    EXPECT_EQ(pointerIn(hosted.part(@"profileControl"), "constTable"), nullptr);
    [panel constraints:nil];
}
