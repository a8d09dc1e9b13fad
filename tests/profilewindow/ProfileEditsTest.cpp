#include "profiles/ProfileEdits.h"

#include "profiles/ProfileName.h"

#include <gtest/gtest.h>
#include <memory>

namespace {

ProfileRecord record(int32_t inMenu, const char* fileName, int32_t location = kOnDisk)
{
    ProfileRecord made{1, inMenu, 2, {}, {}, location, 0};
    setNameText(made.FileName, fileName, kProfileNameSize);
    return made;
}

std::unique_ptr<ProfileList> listOf(int count)
{
    auto list = std::make_unique<ProfileList>();
    for (int i = 0; i < count; ++i)
        appendCopy(*list, record(kByHandListed, std::to_string(i).c_str()));
    return list;
}

} // namespace

TEST(ProfileEdits, TickWithinThePairOfAState)
{
    const int32_t hidden[] = {0, 1, 2, 1, 2, 5, 5, 7}, listed[] = {0, 3, 4, 3, 4, 6, 6, 7};
    for (int32_t code = 0; code < 8; ++code) {
        ProfileRecord ticked = record(code, "a"), cleared = ticked;
        setListed(ticked, true);
        setListed(cleared, false);
        EXPECT_EQ(ticked.InMenu, listed[code]) << code;
        EXPECT_EQ(cleared.InMenu, hidden[code]) << code;
        EXPECT_EQ(isListed(record(code, "a")), code == 3 || code == 4 || code == 6) << code;
        EXPECT_EQ(isCustom(record(code, "a")), code >= 1 && code <= 4) << code;
        EXPECT_EQ(isOnPrinter(record(code, "a")), code == 2 || code == 4) << code;
    }
}

TEST(ProfileEdits, AddInTheFirstFreeSlotUntilTheListIsFull)
{
    auto list = listOf(499);
    list->records[7].InMenu = kFreeSlot;
    EXPECT_EQ(addByHand(*list, recordByHand(kOnDisk)), &list->records[7]);
    EXPECT_EQ(list->records[7].IndexOnDevice, 507);
    EXPECT_EQ(addByHand(*list, recordByHand(kOnDisk)), &list->records[499]);
    EXPECT_EQ(list->records[499].TableColumn7, 3);
    EXPECT_EQ(list->iNum, 501) << "the slot that was free had been counted";
    EXPECT_EQ(addByHand(*list, recordByHand(kOnDisk)), nullptr);
    EXPECT_EQ(recordAtRow(*list, 500), nullptr);
}

TEST(ProfileEdits, RemoveByMovingTheLaterRowsUp)
{
    auto list = listOf(kProfileSlots);
    removeRow(*list, 498);
    EXPECT_EQ(list->iNum, 499);
    EXPECT_EQ(nameText(list->records[498].FileName), "499");
    EXPECT_EQ(list->records[499].InMenu, kFreeSlot);
    EXPECT_EQ(recordAtRow(*list, 499), nullptr);
    for (int rows = 499; rows > 0; --rows)
        removeRow(*list, 0);
    EXPECT_EQ(list->iNum, 0);
    EXPECT_EQ(recordAtRow(*list, 0), nullptr);
    EXPECT_EQ(recordAtRow(*list, -1), nullptr);
}

TEST(ProfileEdits, KeepNoMoreCopiesThanAListHolds)
{
    auto list = listOf(kProfileSlots);
    appendCopy(*list, record(1, "late"));
    EXPECT_EQ(list->iNum, kProfileSlots);
    EXPECT_EQ(nameText(list->records[499].FileName), "499");
}

TEST(ProfileEdits, FindAFileByNameAndLocationExactly)
{
    auto list = listOf(2);
    std::string full(40, 'x');
    appendCopy(*list, record(kByHandListed, full.c_str(), kOnCard));
    EXPECT_TRUE(hasRowWithFile(*list, "1", kOnDisk, -1));
    EXPECT_FALSE(hasRowWithFile(*list, "1", kOnDisk, 1));
    EXPECT_FALSE(hasRowWithFile(*list, "1", kOnCard, -1));
    EXPECT_TRUE(hasRowWithFile(*list, std::string(32, 'x'), kOnCard, -1)) << "32 bytes, no terminator";
    EXPECT_FALSE(hasRowWithFile(*list, std::string(32, 'X'), kOnCard, -1));
}
