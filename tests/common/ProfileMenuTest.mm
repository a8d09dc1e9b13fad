#include "common/PDECommon+Ticket.h"
#include "common/TableFixture.h"
#include "profiles/ListFixture.h"
#include "profiles/PDECommon+Profiles.h"
#include "profiles/ProfilePath.h"

// The profiles of a real list file in pop-ups and in the print settings.
class ProfileMenu : public TableFixture {
protected:
    enum Row { kSource, kSimulation, kDestination, kHalftone };

    ProfileMenu() : root("PDE_ROOT", (sandbox / "root").string()) {}

    void SetUp() override
    {
        openPpd(samplePpd());
        build({row(PDEControlKindPopup, "VelImageRGBSource", nullptr, kRgbSourceProfiles),
               row(PDEControlKindPopup, "VelSimSource", nullptr, kSimulationProfiles),
               row(PDEControlKindPopup, "VelImageDestinationProfile", nullptr, kDestinationProfiles),
               row(PDEControlKindPopup, "VelImageHalftone")});
    }

    void keep(const std::vector<ProfileRecord>& rgb, const std::vector<ProfileRecord>& sim = {},
              const std::vector<ProfileRecord>& dst = {})
    {
        std::filesystem::remove(currentListPath());
        sandbox.write(std::filesystem::path(currentListPath()).lexically_relative(sandbox.path()),
                      listFileText(listOf(rgb), listOf(sim), listOf(dst)));
    }

    int addProfiles() { return [PDECommon commonAddMenuFromProfilePlist:table]; }
    NSPopUpButton* popup(Row row) { return table[row].control; }
    NSInteger choices(Row row) { return (NSInteger)[choicesOf(table[row]) count]; }

    /// Titles behind the PPD's choices.
    std::vector<std::string> profiles(Row row)
    {
        std::vector<std::string> titles;
        for (NSInteger i = choices(row); i < [popup(row) numberOfItems]; ++i)
            titles.push_back([[popup(row) itemTitleAtIndex:i] UTF8String]);
        return titles;
    }

    /// Saves with the profile at this position selected; gives one of the queue's entries.
    std::string savedWith(NSInteger position, NSString* key = nil)
    {
        [popup(kSource) selectItemAtIndex:choices(kSource) + position - 1];
        [PDECommon commonSyncTicketFromPane:[settings handle] session:[session handle] table:table];
        NSDictionary* queue = [[[settings values] objectForKey:@"R4270"] objectForKey:@"Queue"];
        EXPECT_EQ([[settings values] objectForKey:key], [queue objectForKey:key]);
        return [[queue objectForKey:key] UTF8String] ?: "";
    }

    /// The selection after a restore, counted from the first profile as 1.
    NSInteger restored()
    {
        [popup(kSource) selectItemAtIndex:0];
        [PDECommon commonSyncPaneFromTicket:[settings handle] session:[session handle] table:table];
        return [popup(kSource) indexOfSelectedItem] - choices(kSource) + 1;
    }

    NSInteger byDefault()
    {
        return [PDECommon commonGetDefualtValueFromPPDWithSInt32:&table[kSource]] - choices(kSource) + 1;
    }

    ScopedVariable root;
};

TEST_F(ProfileMenu, AppendsTheListedProfilesOfEachListAndOneItemATitle)
{
    EXPECT_EQ(addProfiles(), -1);
    keep({record(kFoundListed, "a.icc"), record(kGoneHidden), record(kFoundHidden), record(kByHandHidden),
          record(kGoneListed, "gone.icc", kOnCard), record(kByHandListed, "hand.icc", 0),
          record(9, "odd.icc"), record(kFoundListed, "a.icc")},
         {record(kFoundListed, "sim.icc")}, {record(kFoundListed, "dst.icc")});
    // A choice of the PPD keeps its place beside a profile's item with the same title.
    [[popup(kSource) itemAtIndex:1] setTitle:@"odd.icc(Profile 9)Disk"];
    for (int again = 0; again < 2; ++again) {
        // The row without profiles gives the result; nobody minds.
        EXPECT_EQ(addProfiles(), -50);
        EXPECT_EQ(profiles(kSource),
                  (std::vector<std::string>{"gone.icc(Profile 3)Card", "hand.icc(Profile 6)",
                                            "odd.icc(Profile 9)Disk", "a.icc(Profile 4)Disk"}));
        EXPECT_EQ(profiles(kSimulation), (std::vector<std::string>{"sim.icc(Profile 4)Disk"}));
        EXPECT_EQ(profiles(kDestination), (std::vector<std::string>{"dst.icc(Profile 4)Disk"}));
        EXPECT_TRUE(profiles(kHalftone).empty());
    }
    EXPECT_STREQ([[popup(kSource) itemTitleAtIndex:1] UTF8String], "odd.icc(Profile 9)Disk");
    table[kSource].control = nil;
    EXPECT_EQ(addProfiles(), 0);
}

TEST_F(ProfileMenu, TakesFullListsAndNamesThatWereCutInsideACharacter)
{
    std::vector<ProfileRecord> full;
    for (int i = 0; i < kProfileSlots; ++i)
        full.push_back(record(kFoundListed, "p" + std::to_string(i) + ".icc"));
    // 30 bytes, then the first half of a character.
    setNameText(full[7].FileName, std::string(30, 'a') + "\u00e9");
    keep(full);
    addProfiles();
    ASSERT_EQ(profiles(kSource).size(), (size_t)kProfileSlots);
    EXPECT_EQ(profiles(kSource)[7], std::string(30, 'a') + "(Profile 4)Disk");
    for (NSInteger position : {1, 8, kProfileSlots}) {
        savedWith(position);
        EXPECT_EQ(restored(), position);
    }
}

TEST_F(ProfileMenu, StoresTheCodedPathAndTheFlagAndFindsOnlyWhatIsListed)
{
    std::vector<ProfileRecord> list = {record(kGoneListed, "place.icc", 0), record(kByHandHidden, "b.icc"),
                                       record(kFoundListed, "c.icc", kOnCard)};
    keep(list);
    addProfiles();
    std::string coded = encodePrinterPath("/ataCf1a/data/USfiles/Profiles/c.icc");
    EXPECT_EQ(coded.substr(0, 4), "2?61");
    // A choice of the PPD takes the flag back and leaves the path.
    for (NSInteger position : {2, 0}) {
        EXPECT_EQ(savedWith(position, @"VelImageRGBSourceCustomFilename"), coded);
        EXPECT_EQ(savedWith(position, @"VelImageRGBSourceCustom"), position > 0 ? "True" : "False");
        EXPECT_EQ(savedWith(position, @"VelSimSourceCustom"), "False");
        EXPECT_EQ(savedWith(position, @"VelImageHalftoneCustom"), "");
        EXPECT_EQ(restored(), position);
    }
    EXPECT_EQ(savedWith(2, @"VelImageRGBSource"), "None");
    for (int32_t change : {(int32_t)kFoundHidden, 9}) {
        list[2].InMenu = change;
        keep(list);
        EXPECT_EQ(restored(), byDefault()) << change;
    }
    // No known place on the printer: it has a position and is never found again.
    savedWith(1);
    EXPECT_EQ(restored(), byDefault());
    std::filesystem::remove(currentListPath());
    EXPECT_EQ(restored(), byDefault());
}

TEST_F(ProfileMenu, TakesNoPositionAndNoPathThatIsNone)
{
    keep({record(kFoundListed, "a.icc")});
    NSMutableDictionary* entries = [NSMutableDictionary dictionary];
    EXPECT_EQ([PDECommon commonSetTicketAddedProfile:&table[kSource] dict:entries select:5], 0);
    EXPECT_TRUE([[entries objectForKey:@"VelImageRGBSourceCustomFilename"] isEqual:@""]);
    EXPECT_EQ([PDECommon commonSetTicketAddedProfile:&table[kHalftone] dict:entries select:1], -1);
    EXPECT_EQ([PDECommon commonGetTicketAddedProfile:&table[kSource] dict:nil], -1);
    NSString* endless = [@"" stringByPaddingToLength:100000 withString:@"2" startingAtIndex:0];
    for (id stored in @[ @"", @7, @[], @{}, @"x", @"éé", endless, @"??" ])
        EXPECT_EQ([PDECommon commonGetTicketAddedProfile:&table[kSource]
                                                    dict:@{@"VelImageRGBSourceCustomFilename" : stored}],
                  0);
}
