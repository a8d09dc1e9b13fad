#include "DiscoveryFixture.h"
#include "discovery/SpoolMerge.h"
#include "discovery/SpoolTable.h"

#include <cstring>

// What becomes of the stored lists at the end of a walk.

using Merge = DiscoveryTest;

namespace {

/// Makes `fileName` row `row` of the spool.
ProfileRecord& spool(int row, const std::string& fileName, int32_t profileClass = 1,
                     int32_t location = kOnDisk)
{
    ProfileRecord& record = PlistForSpool.records[row - 1];
    record = {row, 0, profileClass, {}, {}, location, 3};
    setNameText(record.FileName, fileName);
    setNameText(record.ProfileName, "found " + fileName);
    PlistForSpool.iNum = std::max(PlistForSpool.iNum, row);
    return record;
}

} // namespace

TEST_F(Merge, MatchesAllBytesOfTheNameAndTheLocationWithinTheCountedSlots)
{
    vSpoolPlist(nullptr, 0, nullptr, 1);
    ProfileRecord& row = spool(1, "A.ICC");
    auto list = std::make_unique<ProfileList>();
    list->records[0] = record("A.ICC", kGoneListed);
    list->records[0].FileName[31] = 'x'; // behind the terminator
    list->records[1] = record("A.ICC", kGoneListed);
    list->records[1].Location = kOnCard;
    list->records[2] = record("A.ICC", kGoneListed);
    list->iNum = 2; // a hole was closed before, so the third is not looked at
    vRestructDetail(0, list.get());
    EXPECT_EQ(list->records[2].InMenu, kGoneListed);
    row.InMenu = kFoundHidden;
    EXPECT_EQ(memcmp(&list->records[3], &row, sizeof row), 0) << "the row joins with all its fields";
    EXPECT_EQ(list->iNum, 3);
    row.InMenu = 0;
    vRestructDetail(0, list.get());
    EXPECT_EQ(list->records[2].InMenu, kFoundListed) << "now it is counted";

    for (ProfileRecord& full : list->records)
        full = record("B.ICC", kByHandListed);
    list->iNum = kProfileSlots;
    vRestructDetail(0, list.get());
    EXPECT_EQ(list->iNum, kProfileSlots);
    EXPECT_STREQ(list->records[499].FileName, "B.ICC") << "a full list drops the row";
}

TEST_F(Merge, FilesRowsByClassLocationAndName)
{
    vSpoolPlist(nullptr, 0, nullptr, 1);
    spool(1, "ONE.ICC", 1);
    spool(2, "TWO.ICC", 2, kOnCard);
    spool(3, "THREE.ICC", 3);
    spool(4, "FOUR.ICC", 4);
    spool(5, "MEMORY.ICC", 1, 1);
    spool(6, "BAD NAME.ICC", 1);
    memset(spool(7, "", 1).FileName, 'F', kProfileNameSize);
    ProfileRecord& garbled = spool(8, "GARBLED.ICC", 1);
    memcpy(garbled.ProfileName, "\xff\xfe\1<&>]]>", 9);
    spool(9, "BEYOND.ICC", 1);
    PlistForSpool.iNum = 8; // nine rows, but column 1 had eight values
    EXPECT_EQ(vRestructPlistSpool2Current(0), 0);
    EXPECT_EQ(codes(kRgbList), (Codes{{"ONE.ICC", 2}, {"TWO.ICC", 2}, {"GARBLED.ICC", 2}}));
    EXPECT_EQ(codes(kSimList), (Codes{{"THREE.ICC", 2}}));
    EXPECT_EQ(codes(kDstList), (Codes{{"THREE.ICC", 2}}));
}

TEST_F(Merge, CleansBadNamesAndClosesTheGapsOfTheRgbListOnly)
{
    const std::vector<ProfileRecord> badAndGood = {record("NO GOOD.ICC", kByHandListed),
                                                   record("GOOD.ICC", kByHandListed)};
    store(badAndGood, badAndGood, badAndGood);
    vSpoolPlist(nullptr, 0, nullptr, 1);
    spool(1, "GOOD.ICC", 1);
    spool(2, "GOOD.ICC", 3);
    EXPECT_EQ(vRestructPlistSpool2Current(0), 0);
    EXPECT_EQ(codes(kRgbList), (Codes{{"GOOD.ICC", 4}}));
    for (ProfileListIndex index : {kSimList, kDstList}) {
        EXPECT_EQ(lists_[index].iNum, 2) << "the entry stood beyond the count, so it joined again";
        EXPECT_EQ(lists_[index].records[0].InMenu, kFoundHidden);
        EXPECT_EQ(lists_[index].records[1].InMenu, kByHandListed);
    }
}

TEST_F(Merge, CleansEntriesWithoutADeviceIndexThoughJustFound)
{
    store({record("HIDDEN.ICC", kGoneHidden, 0), record("LISTED.ICC", kGoneListed, 0)});
    vSpoolPlist(nullptr, 0, nullptr, 1);
    spool(1, "HIDDEN.ICC");
    spool(2, "LISTED.ICC");
    spool(3, "FRESH.ICC").IndexOnDevice = 0;
    PlistForSpool.iNum = 9999; // a table that repeats rows counts more than there are
    EXPECT_EQ(vRestructPlistSpool2Current(0), 0);
    EXPECT_EQ(codes(kRgbList), (Codes{{"LISTED.ICC", 6}}));
    EXPECT_EQ(lists_[kRgbList].records[0].IndexOnDevice, 501);
}
