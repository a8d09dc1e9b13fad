#include "ListFixture.h"

#include "profiles/HelperChannel.h"
#include "profiles/ProfileEdits.h"
#include "profiles/ProfilePath.h"

namespace {

class ProfileListOperations : public ListFixture {
protected:
    /// The first list after a walk found `fresh` and the user had deleted `deleted`.
    static std::string mapped(const ProfileList& fresh, const ProfileList& deleted = {})
    {
        ProfileList out[3] = {}, none{};
        VelPListMappingProfile_All_Pap(&fresh, &none, &none, &out[0], &out[1], &out[2], &deleted, &none,
                                       &none);
        return slots(out[0], out[0].iNum);
    }
};

} // namespace

TEST_F(ProfileListOperations, AMissingPartFailsWhereItIsRequired)
{
    auto storeWithout = [&](const std::string& key) {
        std::string text = listFileText(listOf({record(3)}), {}, {});
        writeListFile(text.replace(text.rfind("<key>" + key + "</key>") + 5, key.size(), "other"));
    };
    storeWithout("SIM");
    EXPECT_EQ(readAll(), -1);
    EXPECT_EQ(rgb().iNum, 0) << "nothing is filled when a class is missing";
    EXPECT_EQ(VelPListReadProfile_Dict(&rgb(), kRgbList), 0);
    EXPECT_EQ(VelPListReadProfile_Dict(&sim(), kSimList), -1);
    for (const char* field : kFieldKeys) {
        storeWithout(field);
        EXPECT_EQ(readAll() + VelPListReadProfile_Dict_Pap(&dst(), kDstList), -2) << field;
    }
    EXPECT_EQ(VelPListReadProfile_Dict(&rgb(), -1) + VelPListReadProfile_Dict(&rgb(), 3), -2);
}

TEST_F(ProfileListOperations, AQueueThatCannotBeWalkedHidesCode2AndKeepsItInFrontOfTheNewList)
{
    writeListFile(listFileText(listOf({record(4, "a"), record(2, "b"), record(6, "c")}), {}, {}));
    ASSERT_EQ(VelPListReadProfile_Dict_Pap(&rgb(), kRgbList), 0);
    EXPECT_EQ(slots(rgb(), 3), "6 a, 6 c, 0 , ");
    EXPECT_EQ(rgb().iNum, 2);
    const ProfileRecord shown = rgb().records[0], elsewhere = record(6, "a", kOnCard);
    const ProfileList without = listOf({rgb().records[1]});
    const std::tuple<ProfileList, ProfileList, const char*> rows[] = {
        {rgb(), {}, "2 b, 6 a, 6 c, "},
        {without, listOf({shown}), "2 b, 6 c, "},
        {without, {}, "4 a, 2 b, 6 c, "}, // not deleted: comes back
        {listOf({elsewhere}), {}, "4 a, 2 b, 6 a, "},
    };
    for (const auto& [fresh, deleted, expected] : rows)
        EXPECT_EQ(mapped(fresh, deleted), expected);
    ProfileList full = listOf(std::vector(kProfileSlots - 1, record(2, "old")));
    VelPListMapping_Pap(&rgb(), &full, &sim(), &dst());
    EXPECT_EQ(sim().iNum, kProfileSlots);
    EXPECT_EQ(nameText(sim().records[499].FileName), "a");
}

TEST_F(ProfileListOperations, TheStepsOfTheMergeCleanPadAndSalvage)
{
    ProfileList& list = rgb();
    for (int32_t code = 0; code <= 6; ++code)
        list.records[code] = {0, code, 2, "n", {}, kOnDisk, 3};
    list.records[499] = record(3, "last");
    list.iNum = 8;
    VelPListCleanProfile_Dict(&list);
    EXPECT_EQ(slots(list, 7), "0 , 0 , 0 , 3 n, 3 n, 0 , 0 , ");
    EXPECT_EQ(list.records[4].IndexOnDevice, 501);
    EXPECT_EQ(list.iNum, 3) << "each cleared record lowers the count, a free one with a name too";
    list.records[4].FileName[0] = '\0';
    VelPListPaddingProfile_Dict(&list);
    EXPECT_EQ(slots(list, 4), "3 n, 3 , 3 last, 0 , ");
    EXPECT_EQ(list.records[2].TableColumn7, 3) << "all seven fields move";
    const ProfileRecord freed{.ProfileClass = 2};
    EXPECT_EQ(memcmp(&list.records[499], &freed, sizeof freed), 0) << "but the class stays, too";
    VelPListSalvage_Dict(&list);
    EXPECT_EQ(slots(list, 4), "6 n, 3 , 6 last, 0 , ") << "one without a file name is left";
}

TEST_F(ProfileListOperations, ARefusedUserIsOnlyAskedAndCommandsCarryTheirParametersInOrder)
{
    installHelper("echo \"$1=FALSE\"");
    EXPECT_EQ(VelPListWriteProfile_All(&rgb(), &sim(), &dst()), -1);
    EXPECT_EQ(VelPListWriteProfile_All_Pap(&rgb(), &sim(), &dst(), &rgb(), &sim(), &dst()), -1);
    VelPListSwapProfile(2);
    EXPECT_EQ(VelPListExistProfile() + VelPListRemove(2) + VelPListRemove(3), 0);
    installHelper(kSayTrue);
    EXPECT_EQ(VelPListRemove(1) + VelPListRemove(4), 0) << "other choices start nothing";
    VelPListSwapProfile(-2);
    EXPECT_EQ(VelPListExistProfile() + VelPListRemove(2) + VelPListRemove(3), 3);
    const std::string current = currentListPath() + "|\n", asked = "velPListIsAdminProfile_XPC|" + current,
                      paths = currentListPath() + "|" + previousListPath() + "|\n";
    EXPECT_EQ(calls(), asked + asked + asked + asked + asked + asked + // refused
                           asked + "velPListSwapProfile_XPC|-2|" + paths + asked +
                           "velPListExistProfile_XPC|" + current + asked + "velPListRemove_XPC|" +
                           previousListPath() + "|\n" + asked + "velPListRemove_XPC|" + current);
}

TEST(ProfileEdits, AListTakesFiveHundredAndClosesUpWhenOneGoes)
{
    for (int32_t code = 0; code < 8; ++code)
        EXPECT_EQ(isCustom(record(code)), code >= 1 && code <= 4) << code;
    auto list = std::make_unique<ProfileList>();
    for (int i = 0; i < kProfileSlots; ++i)
        appendCopy(*list, record(6, std::to_string(i)));
    appendCopy(*list, record(1, "late"));
    EXPECT_EQ(list->iNum, kProfileSlots);
    removeRow(*list, 497);
    EXPECT_EQ(nameText(list->records[498].FileName), "499");
    EXPECT_EQ(list->records[499].InMenu, kFreeSlot);
    EXPECT_EQ(addByHand(*list, recordByHand(kOnDisk)), &list->records[499]);
    EXPECT_EQ(list->records[499].IndexOnDevice, 999);
    removeRecord(*list, list->records[7]);
    EXPECT_EQ(nameText(list->records[7].FileName), "8");
    EXPECT_EQ(list->iNum, 499);
}

TEST(ProfilePath, CodingIsTheInverseOfDecodingAndNotHexadecimal)
{
    std::string all = "\xC3\xA9\xF0\x9F\x8E\xA8";
    for (char c = 0x7F; c > 0; --c)
        all += c;
    EXPECT_EQ(decodePrinterPath(encodePrinterPath(all)), all);
    EXPECT_EQ(encodePrinterPath("/az\xFF"), "2?617:??");
    EXPECT_EQ(decodePrinterPath("@1"), "\x01") << "48 + 16: the first character counts modulo 16";
    EXPECT_EQ(decodePrinterPath("2?6"), "/") << "a character without a partner";
    EXPECT_EQ(decodePrinterPath(std::string(1023, '2'))->size(), 511u);
    for (const std::string& refused : {std::string(1024, '2'), std::string("2\xC3\xA9"), std::string("??")})
        EXPECT_EQ(decodePrinterPath(refused), std::nullopt);
    EXPECT_EQ(printerPath(record(3, "a.icc")), "/ata1a/data/USfiles/Profiles/a.icc");
    EXPECT_EQ(printerPath(record(3, "a.icc", kOnCard)), "/ataCf1a/data/USfiles/Profiles/a.icc");
    ProfileRecord full = record(3, "", 0);
    memset(full.FileName, 'f', kProfileNameSize);
    EXPECT_EQ(printerPath(full), std::string(32, 'f')) << "a name without terminator";
}
