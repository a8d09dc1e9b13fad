#include "ListFixture.h"

#include "profiles/HelperChannel.h"

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
    size_t at;
    while ((at = text.find("<key>" + key + "</key>")) != std::string::npos)
        text.replace(at + 5, key.size(), "other");
    return text;
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
        EXPECT_EQ(readAll(), -1) << field;
        EXPECT_EQ(VelPListReadProfile_Dict_Pap(&dst(), kDstList), -1) << field;
    }
    for (int32_t index : {-1, 3, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(VelPListReadProfile_Dict(&rgb(), index), -1);
        EXPECT_EQ(VelPListWriteProfile_Dict(&rgb(), index, nullptr, nullptr, nullptr), -1);
    }
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
        EXPECT_EQ(VelPListMappingProfile_All_Pap(&fresh, &none, &none, &out[0], &out[1], &out[2], &deleted,
                                                 &none, &none),
                  0);
        EXPECT_EQ(out[1].iNum + out[2].iNum, 0);
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
    EXPECT_EQ(sim().records[498].InMenu, 2);
}

TEST_F(ProfileListOperations, CleanKeepsListedPrinterEntriesAndSalvageMakesThemByHand)
{
    ProfileList list{};
    for (int32_t code = 0; code <= 6; ++code) {
        list.records[code] = record(code);
        list.records[code].IndexOnDevice = 0;
    }
    list.records[7] = record(6);
    list.records[8] = record(4, "");
    list.records[8].IndexOnDevice = 0;
    memset(list.records[8].FileName, 0, kProfileNameSize);
    list.iNum = 8;
    VelPListCleanProfile_Dict(&list);
    EXPECT_EQ(codes(list, 9), (std::vector<int32_t>{0, 0, 0, 3, 3, 0, 0, 6, 4}));
    EXPECT_EQ(list.records[4].IndexOnDevice, 501);
    EXPECT_EQ(list.records[5].TableColumn7, 0);
    EXPECT_EQ(list.iNum, 3) << "each cleared record lowers the count, a free one with a name too";
    list.records[4].FileName[0] = '\0';
    list.records[8].IndexOnDevice = 1;
    list.records[7].InMenu = kGoneListed;
    VelPListSalvage_Dict(&list);
    EXPECT_EQ(codes(list, 9), (std::vector<int32_t>{0, 0, 0, 6, 3, 0, 0, 6, 4})) << "salvaged";
}

TEST_F(ProfileListOperations, PaddingClosesHolesAndLeavesTheClassOfAFreedSlot)
{
    ProfileList list{};
    list.records[1] = record(3);
    list.records[3] = record(6);
    list.records[499] = record(5);
    list.iNum = 77;
    VelPListPaddingProfile_Dict(&list);
    EXPECT_EQ(codes(list, 5), (std::vector<int32_t>{3, 6, 5, 0, 0}));
    EXPECT_EQ(list.iNum, 77);
    EXPECT_EQ(list.records[1].TableColumn7, 3) << "all seven fields move";
    ProfileRecord freed{};
    freed.ProfileClass = 2;
    EXPECT_EQ(memcmp(&list.records[499], &freed, sizeof freed), 0);
    EXPECT_EQ(memcmp(&list.records[3], &freed, sizeof freed), 0);
}

TEST_F(ProfileListOperations, ARefusedUserChangesNothingAndIsOnlyAsked)
{
    writeCodes({3});
    installHelper("echo \"$1=FALSE\"");
    ProfileList list = listOf({record(6)}), none{};
    EXPECT_EQ(VelPListWriteProfile_All(&list, &none, &none), -1);
    EXPECT_EQ(VelPListWriteProfile_All_Pap(&list, &none, &none, &none, &none, &none), -1);
    EXPECT_EQ(VelPListWriteProfile_Dict(&list, kSimList, nullptr, &sim(), nullptr), -1);
    EXPECT_EQ(sim().iNum, 1) << "the new list is handed out also after a failed write";
    VelPListSwapProfile(2);
    EXPECT_EQ(VelPListExistProfile() + VelPListRemove(2) + VelPListRemove(3), 0);
    std::string asked;
    for (int i = 0; i < 7; ++i)
        asked += "velPListIsAdminProfile_XPC\n";
    EXPECT_EQ(commands(), asked);
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

TEST_F(ProfileListOperations, WritingOneListSendsTheStoredOthers)
{
    ProfileList stored = listOf({record(4, "kept.icc")}), fresh = listOf({record(6, "new.icc")});
    writeListFile(listFileText(stored, ProfileList{}, stored));
    installHelper(kSayTrue);
    const std::string kBeforePiece = "writeDataToPlistFile_XPC|" + fileUrl(currentListPath()) + "|";
    ASSERT_EQ(VelPListWriteProfile_Dict(&fresh, kSimList, &rgb(), &sim(), &dst()), 0);
    std::string sent;
    for (int n = 2; !arguments(n + 1).empty(); ++n)
        sent += arguments(n).erase(0, kBeforePiece.size());
    std::erase(sent, '|');
    EXPECT_EQ(sent, listFileText(stored, fresh, stored));
    EXPECT_EQ(memcmp(&sim(), &fresh, sizeof fresh), 0);
    EXPECT_EQ(nameText(dst().records[0].FileName), "kept.icc");
}
