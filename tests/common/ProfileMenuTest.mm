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
        build({{makePopup(), PDEControlKindPopup, "VelImageRGBSource", nullptr, "Source", kNoKey,
                kRgbSourceProfiles},
               {makePopup(), PDEControlKindPopup, "VelSimSource", nullptr, "Simulation", kNoKey,
                kSimulationProfiles},
               {makePopup(), PDEControlKindPopup, "VelImageDestinationProfile", nullptr, "Destination",
                kNoKey, kDestinationProfiles},
               {makePopup(), PDEControlKindPopup, "VelImageHalftone", nullptr, "Halftone", kNoKey,
                kNoProfiles}});
    }

    void keep(const std::vector<ProfileRecord>& rgb, const std::vector<ProfileRecord>& sim = {},
              const std::vector<ProfileRecord>& dst = {})
    {
        // A new file each time: writing over an old one waits for the disk.
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

    /// Saves with the profile at this position selected; gives the queue's entries.
    NSDictionary* savedWith(Row row, NSInteger position)
    {
        [popup(row) selectItemAtIndex:choices(row) + position - 1];
        EXPECT_EQ([PDECommon commonSyncTicketFromPane:[settings handle] session:[session handle] table:table],
                  0);
        return [[[settings values] objectForKey:@"R4270"] objectForKey:@"Queue"];
    }

    /// The selection after a restore, counted from the first profile as 1; 0 and less are the PPD's choices.
    NSInteger restored(Row row)
    {
        [popup(row) selectItemAtIndex:0];
        EXPECT_EQ([PDECommon commonSyncPaneFromTicket:[settings handle] session:[session handle] table:table],
                  0);
        return [popup(row) indexOfSelectedItem] - choices(row) + 1;
    }

    NSInteger defaultPosition(Row row)
    {
        return [PDECommon commonGetDefualtValueFromPPDWithSInt32:&table[row]] - choices(row) + 1;
    }

    ScopedVariable root;
};

static NSString* text(const std::string& utf8)
{
    return [NSString stringWithUTF8String:utf8.c_str()];
}

TEST_F(ProfileMenu, AppendsTheListedProfilesOfEachList)
{
    keep({record(kFoundListed, "rgb.icc"), record(kGoneHidden), record(kFoundHidden), record(kByHandHidden),
          record(kGoneListed, "gone.icc", kOnCard), record(kByHandListed, "hand.icc", 0),
          record(9, "odd.icc")},
         {record(kFoundListed, "sim.icc")}, {record(kFoundListed, "dst.icc")});
    NSInteger halftones = [popup(kHalftone) numberOfItems];
    // The row without profiles gives the result; nobody minds.
    EXPECT_EQ(addProfiles(), -50);
    EXPECT_EQ(profiles(kSource),
              (std::vector<std::string>{"rgb.icc(Profile 4)Disk", "gone.icc(Profile 3)Card",
                                        "hand.icc(Profile 6)", "odd.icc(Profile 9)Disk"}));
    EXPECT_EQ(profiles(kSimulation), (std::vector<std::string>{"sim.icc(Profile 4)Disk"}));
    EXPECT_EQ(profiles(kDestination), (std::vector<std::string>{"dst.icc(Profile 4)Disk"}));
    EXPECT_EQ([popup(kHalftone) numberOfItems], halftones);
    table[kHalftone].control = nil;
    EXPECT_EQ(addProfiles(), 0);
    table[kSource].control = nil;
    EXPECT_EQ(addProfiles(), 0);
}

TEST_F(ProfileMenu, OffersThePpdsChoicesOnlyWithoutAListFile)
{
    EXPECT_EQ(addProfiles(), -1);
    EXPECT_TRUE(profiles(kSource).empty());
}

TEST_F(ProfileMenu, TakesFullListsAndNamesThatWereCutInsideACharacter)
{
    std::vector<ProfileRecord> full;
    for (int i = 0; i < kProfileSlots; ++i)
        full.push_back(record(kFoundListed, "p" + std::to_string(i) + ".icc"));
    // 30 bytes, then the first half of a character.
    setNameText(full[7].FileName, std::string(30, 'a') + "\u00e9");
    full[8].FileName[0] = '\xff';
    keep(full);
    addProfiles();
    ASSERT_EQ(profiles(kSource).size(), (size_t)kProfileSlots);
    EXPECT_EQ(profiles(kSource)[7], std::string(30, 'a') + "(Profile 4)Disk");
    EXPECT_EQ(profiles(kSource)[8], "(Profile 4)Disk");
    for (NSInteger position : {1, 8, kProfileSlots}) {
        savedWith(kSource, position);
        EXPECT_EQ(restored(kSource), position);
    }
}

TEST_F(ProfileMenu, KeepsOneItemAProfileTitleBehindThePpdsChoices)
{
    keep({record(kFoundListed, "a.icc"), record(kFoundListed, "b.icc"), record(kFoundListed, "a.icc")});
    addProfiles();
    EXPECT_EQ(profiles(kSource), (std::vector<std::string>{"b.icc(Profile 4)Disk", "a.icc(Profile 4)Disk"}));
    // A second call finds its own items there; a choice of the PPD keeps its place beside a profile's item.
    [[popup(kSource) itemAtIndex:1] setTitle:@"b.icc(Profile 4)Disk"];
    addProfiles();
    EXPECT_EQ(profiles(kSource), (std::vector<std::string>{"b.icc(Profile 4)Disk", "a.icc(Profile 4)Disk"}));
    EXPECT_STREQ([[popup(kSource) itemTitleAtIndex:1] UTF8String], "b.icc(Profile 4)Disk");
    for (NSMenuItem* item in [popup(kSource) itemArray]) {
        [[popup(kSource) menu] update];
        EXPECT_TRUE([item isEnabled]) << [[item title] UTF8String];
    }
}

TEST_F(ProfileMenu, StoresTheCodedPathAndTheFlagBesideTheFirstChoice)
{
    keep({record(kGoneListed, "a.icc"), record(kByHandHidden, "b.icc"),
          record(kFoundListed, "c.icc", kOnCard)});
    addProfiles();
    NSDictionary* saved = savedWith(kSource, 2);
    std::string coded = encodePrinterPath("/ataCf1a/data/USfiles/Profiles/c.icc");
    EXPECT_EQ(coded.substr(0, 4), "2?61");
    EXPECT_TRUE([[saved objectForKey:@"VelImageRGBSourceCustomFilename"] isEqual:text(coded)]);
    EXPECT_TRUE([[saved objectForKey:@"VelImageRGBSourceCustom"] isEqual:@"True"]);
    EXPECT_TRUE([[saved objectForKey:@"VelImageRGBSource"] isEqual:@"None"]);
    EXPECT_TRUE([[saved objectForKey:@"VelSimSourceCustom"] isEqual:@"False"]);
    EXPECT_EQ([saved objectForKey:@"VelImageHalftoneCustom"], nil);
    for (NSString* key in saved)
        EXPECT_TRUE([[[settings values] objectForKey:key] isEqual:[saved objectForKey:key]])
            << [key UTF8String];
    EXPECT_EQ(restored(kSource), 2);
    // A choice of the PPD takes the flag back and leaves the path.
    saved = savedWith(kSource, 0);
    EXPECT_TRUE([[saved objectForKey:@"VelImageRGBSourceCustom"] isEqual:@"False"]);
    EXPECT_TRUE([[saved objectForKey:@"VelImageRGBSourceCustomFilename"] isEqual:text(coded)]);
    EXPECT_EQ(restored(kSource), 0);
}

TEST_F(ProfileMenu, GivesTheDefaultForAProfileThatIsNotListed)
{
    std::vector<ProfileRecord> list = {record(kFoundListed, "place.icc", 0), record(kFoundListed, "b.icc"),
                                       record(kFoundListed, "c.icc")};
    keep(list);
    addProfiles();
    // No known place on the printer: it has a position and is never found again.
    savedWith(kSource, 1);
    EXPECT_EQ(restored(kSource), defaultPosition(kSource));
    savedWith(kSource, 3);
    EXPECT_EQ(restored(kSource), 3);
    for (int32_t change : {(int32_t)kFoundHidden, 9}) {
        list[2].InMenu = change;
        keep(list);
        EXPECT_EQ(restored(kSource), defaultPosition(kSource)) << change;
    }
    std::filesystem::remove(currentListPath());
    EXPECT_EQ(restored(kSource), defaultPosition(kSource));
}

TEST_F(ProfileMenu, StoresAnEmptyPathForAPositionWithoutAProfile)
{
    keep({record(kFoundListed, "a.icc"), record(kFoundListed, "b.icc")});
    NSMutableDictionary* entries = [NSMutableDictionary dictionary];
    EXPECT_EQ([PDECommon commonSetTicketAddedProfile:&table[kSource] dict:entries select:5], 0);
    EXPECT_TRUE([[entries objectForKey:@"VelImageRGBSourceCustomFilename"] isEqual:@""]);
    EXPECT_TRUE([[entries objectForKey:@"VelImageRGBSourceCustom"] isEqual:@"True"]);
    EXPECT_EQ([PDECommon commonGetTicketAddedProfile:&table[kSource] dict:entries], 0);
    EXPECT_EQ([PDECommon commonSetTicketAddedProfile:&table[kSource] dict:nil select:1], -1);
    EXPECT_EQ([PDECommon commonSetTicketAddedProfile:&table[kHalftone] dict:entries select:1], -1);
    EXPECT_EQ([PDECommon commonGetTicketAddedProfile:&table[kSource] dict:nil], -1);
    EXPECT_EQ([PDECommon commonGetTicketAddedProfile:&table[kHalftone] dict:entries], -1);
    EXPECT_EQ([PDECommon commonSetTicketAddedProfileFlag:&table[kHalftone] dict:entries flag:@"True"], 0);
    EXPECT_EQ([PDECommon commonGetTicketAddedProfileFlag:&table[kHalftone] dict:entries], nil);
    EXPECT_EQ([entries count], 3u);
}

TEST_F(ProfileMenu, TakesNoStoredPathThatIsNone)
{
    keep({record(kFoundListed, "a.icc")});
    for (id stored in @[ @7, @[], @{}, @"x", text("\u00e9\u00e9"), text(std::string(100000, '2')), @"??" ]) {
        NSDictionary* entries = @{@"VelImageRGBSourceCustomFilename" : stored};
        EXPECT_EQ([PDECommon commonGetTicketAddedProfile:&table[kSource] dict:entries], 0)
            << [[stored description] length];
    }
}
