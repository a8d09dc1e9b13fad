#include "ListFixture.h"

#include "profiles/ProfileEdits.h"

TEST(ProfileEdits, TickWithinThePairOfAState)
{
    const int32_t hidden[] = {0, 1, 2, 1, 2, 5, 5, 7}, listed[] = {0, 3, 4, 3, 4, 6, 6, 7};
    for (int32_t code = 0; code < 8; ++code) {
        ProfileRecord ticked = record(code), cleared = ticked;
        setListed(ticked, true);
        setListed(cleared, false);
        EXPECT_EQ(ticked.InMenu, listed[code]) << code;
        EXPECT_EQ(cleared.InMenu, hidden[code]) << code;
        EXPECT_EQ(isListed(record(code)), code == 3 || code == 4 || code == 6) << code;
        EXPECT_EQ(isCustom(record(code)), code >= 1 && code <= 4) << code;
        EXPECT_EQ(isOnPrinter(record(code)), code == 2 || code == 4) << code;
    }
}

TEST(ProfileEdits, AListTakesFiveHundredAndClosesUpWhenOneGoes)
{
    auto list = std::make_unique<ProfileList>();
    for (int i = 0; i < kProfileSlots; ++i)
        appendCopy(*list, record(6, std::to_string(i)));
    appendCopy(*list, record(1, "late"));
    EXPECT_EQ(list->iNum, kProfileSlots);
    EXPECT_EQ(addByHand(*list, recordByHand(kOnDisk)), nullptr);
    EXPECT_EQ(recordAtRow(*list, 500), nullptr);
    EXPECT_EQ(recordAtRow(*list, -1), nullptr);
    removeRow(*list, 497);
    EXPECT_EQ(nameText(list->records[498].FileName), "499");
    EXPECT_EQ(list->records[499].InMenu, kFreeSlot);
    EXPECT_EQ(addByHand(*list, recordByHand(kOnDisk)), &list->records[499]);
    EXPECT_EQ(list->records[499].IndexOnDevice, 999);
    EXPECT_EQ(list->records[499].TableColumn7, 3);
    removeRecord(*list, list->records[7]);
    EXPECT_EQ(nameText(list->records[7].FileName), "8");
    EXPECT_EQ(list->iNum, 499);
    while (list->iNum > 0)
        removeRow(*list, 0);
    EXPECT_EQ(codes(*list, kProfileSlots), std::vector<int32_t>(kProfileSlots, 0));
}

TEST(ProfileEdits, AFileIsKnownByNameAndLocationExactly)
{
    ProfileList list = listOf({record(6, "a"), record(6, "a", kOnCard), record(6)});
    setNameText(list.records[2].FileName, std::string(40, 'x'), kProfileNameSize);
    EXPECT_TRUE(hasRowWithFile(list, "a", kOnDisk, -1));
    EXPECT_FALSE(hasRowWithFile(list, "a", kOnDisk, 0));
    EXPECT_TRUE(hasRowWithFile(list, std::string(32, 'x'), kOnDisk, -1)) << "32 bytes, no terminator";
    EXPECT_FALSE(hasRowWithFile(list, std::string(32, 'X'), kOnDisk, -1));
    EXPECT_EQ(findProfile(list, "a", kOnCard), &list.records[1]);
    EXPECT_EQ(findProfile(list, "a", 0), &list.records[0]);
    list.records[0].InMenu = kFreeSlot;
    EXPECT_EQ(findProfile(list, "a", 0), &list.records[1]);
    EXPECT_EQ(findProfile(list, "A", 0), nullptr);
}
