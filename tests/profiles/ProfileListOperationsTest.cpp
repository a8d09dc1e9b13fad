#include "ListFixture.h"

#include "profiles/HelperChannel.h"
#include "profiles/ProfileEdits.h"
#include "profiles/ProfilePath.h"

#include <regex>

namespace {

class ProfileListOperations : public ListFixture {
protected:
    void writeCodes(const std::vector<int32_t>& rgbCodes)
    {
        std::vector<ProfileRecord> records;
        for (size_t i = 0; i < rgbCodes.size(); ++i)
            records.push_back(record(rgbCodes[i], "f" + std::to_string(i) + ".icc"));
        writeListFile(listFileText(listOf(records), ProfileList{}, ProfileList{}));
    }
};

std::string without(std::string text, const std::string& key)
{
    return text.replace(text.rfind("<key>" + key + "</key>") + 5, key.size(), "other");
}

} // namespace

TEST_F(ProfileListOperations, AMissingPartFailsWhereItIsRequired)
{
    std::string good = listFileText(listOf({record(3)}), ProfileList{}, ProfileList{});
    writeListFile(without(good, "SIM"));
    EXPECT_EQ(readAll(), -1);
    EXPECT_EQ(rgb().iNum, 0) << "nothing is filled when a class is missing";
    EXPECT_EQ(VelPListReadProfile_Dict(&rgb(), kRgbList), 0);
    EXPECT_EQ(rgb().iNum, 1);
    EXPECT_EQ(VelPListReadProfile_Dict(&sim(), kSimList), -1);
    for (const char* field : kFieldKeys) {
        writeListFile(without(good, field));
        EXPECT_EQ(readAll() + VelPListReadProfile_Dict_Pap(&dst(), kDstList), -2) << field;
    }
    EXPECT_EQ(VelPListReadProfile_Dict(&rgb(), -1) + VelPListReadProfile_Dict(&rgb(), 3), -2);
    EXPECT_EQ(VelPListWriteProfile_Dict(&rgb(), 3, nullptr, nullptr, nullptr), -1);
}

TEST_F(ProfileListOperations, AQueueThatCannotBeWalkedHidesCode2AndKeepsItInFrontOfTheNewList)
{
    writeCodes({4, 2, 6, 1, 2, 3, 5});
    ASSERT_EQ(VelPListReadProfile_Dict_Pap(&rgb(), kRgbList), 0);
    EXPECT_EQ(codes(rgb(), 6), (std::vector<int32_t>{6, 6, 1, 3, 5, 0}));
    EXPECT_EQ(rgb().iNum, 5);
    writeCodes({4, 2, 6});
    rgb() = {};
    ASSERT_EQ(VelPListReadProfile_Dict_Pap(&rgb(), kRgbList), 0);
    auto mapped = [&](const ProfileList& fresh, const ProfileList& deleted) {
        ProfileList out[3] = {};
        ProfileList none{};
        VelPListMappingProfile_All_Pap(&fresh, &none, &none, &out[0], &out[1], &out[2], &deleted, &none,
                                       &none);
        std::string names;
        for (int i = 0; i < out[0].iNum; ++i)
            names += std::string(nameText(out[0].records[i].FileName)) + ":" +
                     std::to_string(out[0].records[i].InMenu) + " ";
        return names;
    };
    EXPECT_EQ(mapped(rgb(), ProfileList{}), "f1.icc:2 f0.icc:6 f2.icc:6 ");
    ProfileList withoutFirst = listOf({rgb().records[1]});
    EXPECT_EQ(mapped(withoutFirst, listOf({rgb().records[0]})), "f1.icc:2 f2.icc:6 ");
    EXPECT_EQ(mapped(withoutFirst, ProfileList{}), "f0.icc:4 f1.icc:2 f2.icc:6 ")
        << "not deleted: comes back";
    ProfileRecord elsewhere = rgb().records[0];
    elsewhere.Location = kOnCard;
    EXPECT_EQ(mapped(listOf({elsewhere}), ProfileList{}), "f0.icc:4 f1.icc:2 f0.icc:6 ")
        << "another location";

    ProfileList full{};
    std::fill(std::begin(full.records), std::end(full.records), record(2, "old"));
    full.iNum = kProfileSlots - 1;
    VelPListMapping_Pap(&rgb(), &full, &sim(), &dst());
    EXPECT_EQ(sim().iNum, kProfileSlots);
    EXPECT_EQ(nameText(sim().records[499].FileName), "f0.icc");
}

TEST_F(ProfileListOperations, TheStepsOfTheMergeCleanPadAndSalvage)
{
    ProfileList list{};
    for (int32_t code = 0; code <= 6; ++code) {
        list.records[code] = record(code);
        list.records[code].IndexOnDevice = 0;
    }
    list.records[499] = record(3);
    list.iNum = 8;
    VelPListCleanProfile_Dict(&list);
    EXPECT_EQ(codes(list, 7), (std::vector<int32_t>{0, 0, 0, 3, 3, 0, 0}));
    EXPECT_EQ(list.records[4].IndexOnDevice, 501);
    EXPECT_EQ(list.iNum, 3) << "each cleared record lowers the count, a free one with a name too";
    list.records[4].FileName[0] = '\0';
    VelPListPaddingProfile_Dict(&list);
    EXPECT_EQ(codes(list, 4), (std::vector<int32_t>{3, 3, 3, 0}));
    EXPECT_EQ(list.records[2].TableColumn7, 3) << "all seven fields move";
    ProfileRecord freed{};
    freed.ProfileClass = 2;
    EXPECT_EQ(memcmp(&list.records[499], &freed, sizeof freed), 0) << "but the class stays, too";
    EXPECT_EQ(list.iNum, 3);
    VelPListSalvage_Dict(&list);
    EXPECT_EQ(codes(list, 4), (std::vector<int32_t>{6, 3, 6, 0})) << "one without a file name is left";
}

TEST_F(ProfileListOperations, ARefusedUserChangesNothingAndIsOnlyAsked)
{
    writeCodes({3});
    installHelper("echo \"$1=FALSE\"");
    ProfileList list = listOf({record(6)}), none{};
    EXPECT_EQ(VelPListWriteProfile_All(&list, &none, &none), -1);
    EXPECT_EQ(VelPListWriteProfile_All_Pap(&list, &none, &none, &none, &none, &none), -1);
    VelPListSwapProfile(2);
    EXPECT_EQ(VelPListExistProfile() + VelPListRemove(2) + VelPListRemove(3), 0);
    EXPECT_EQ(std::regex_replace(commands(), std::regex("velPListIsAdminProfile_XPC\n"), "?"), "??????");
}

TEST_F(ProfileListOperations, CommandsCarryTheirParametersInOrder)
{
    installHelper(kSayTrue);
    EXPECT_EQ(VelPListRemove(1) + VelPListRemove(0) + VelPListRemove(4), 0);
    EXPECT_EQ(commands(), "") << "nothing is started for another choice";
    VelPListSwapProfile(-2);
    EXPECT_EQ(VelPListExistProfile(), 1);
    EXPECT_EQ(VelPListRemove(2), 1);
    EXPECT_EQ(VelPListRemove(3), 1);
    const std::string current = currentListPath() + "|", previous = previousListPath() + "|";
    EXPECT_EQ(arguments(1), "velPListIsAdminProfile_XPC|" + current);
    EXPECT_EQ(arguments(2), "velPListSwapProfile_XPC|-2|" + current + previous);
    EXPECT_EQ(arguments(4), "velPListExistProfile_XPC|" + current);
    EXPECT_EQ(arguments(6), "velPListRemove_XPC|" + previous);
    EXPECT_EQ(arguments(8), "velPListRemove_XPC|" + current);
}

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
    removeRow(*list, 497);
    EXPECT_EQ(nameText(list->records[498].FileName), "499");
    EXPECT_EQ(list->records[499].InMenu, kFreeSlot);
    EXPECT_EQ(addByHand(*list, recordByHand(kOnDisk)), &list->records[499]);
    EXPECT_EQ(list->records[499].IndexOnDevice, 999);
    EXPECT_EQ(list->records[499].TableColumn7, 3);
    removeRecord(*list, list->records[7]);
    EXPECT_EQ(nameText(list->records[7].FileName), "8");
    EXPECT_EQ(list->iNum, 499);
}

TEST(ProfilePath, CodingIsTheInverseOfDecodingAndNotHexadecimal)
{
    std::string all = "\xC3\xA9\xE6\x97\xA5\xF0\x9F\x8E\xA8";
    for (char c = 0x7F; c > 0; --c)
        all += c;
    EXPECT_EQ(decodePrinterPath(encodePrinterPath(all)), all);
    EXPECT_EQ(encodePrinterPath("/az\xFF"), "2?617:??");
    EXPECT_EQ(decodePrinterPath("@1"), "\x01") << "48 + 16: the first character counts modulo 16";
    EXPECT_EQ(decodePrinterPath("2?6"), "/") << "a character without a partner";
    EXPECT_EQ(decodePrinterPath(std::string(1023, '2'))->size(), 511u);
    for (const std::string& refused : {std::string(1024, '2'), std::string("2\xC3\xA9"), std::string("??")})
        EXPECT_EQ(decodePrinterPath(refused), std::nullopt);
    ProfileRecord full = record(3, "a.icc", kOnDisk);
    EXPECT_EQ(printerPath(full), "/ata1a/data/USfiles/Profiles/a.icc");
    full.Location = kOnCard;
    EXPECT_EQ(printerPath(full), "/ataCf1a/data/USfiles/Profiles/a.icc");
    full.Location = 0;
    memset(full.FileName, 'f', kProfileNameSize);
    EXPECT_EQ(printerPath(full), std::string(32, 'f')) << "a name without terminator";
}
