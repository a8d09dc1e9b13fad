#include "ListFixture.h"

#include <sys/inotify.h>
#include <unistd.h>

namespace {

class ProfileListFile : public ListFixture {
protected:
    int32_t countAfterReading(const std::string& inMenu, const std::string& iNum)
    {
        writeListFile(fileWithRgb(
            classEntries(inMenu, "", iNum.empty() ? "" : "<key>iNum</key><integer>" + iNum + "</integer>")));
        rgb() = {};
        EXPECT_EQ(readAll(), 0);
        return rgb().iNum;
    }
};

std::string slots(std::initializer_list<int> used)
{
    std::string text;
    char entry[64];
    for (int slot : used) {
        snprintf(entry, sizeof entry, "<key>InMenu%04d</key><integer>3</integer>", slot);
        text += entry;
    }
    return text;
}

} // namespace

TEST_F(ProfileListFile, CountFollowsTheUsedSlotsAndWhatLiesBehindAHoleIsLost)
{
    EXPECT_EQ(countAfterReading(slots({0, 1}), ""), 2);
    EXPECT_EQ(countAfterReading(slots({0, 1}), "400"), 2);
    EXPECT_EQ(countAfterReading(slots({0, 1}), "-1"), 2);
    EXPECT_EQ(countAfterReading(slots({0, 1}), "1000000000"), 2);
    EXPECT_EQ(countAfterReading(slots({0, 2}), "3"), 2);
    EXPECT_EQ(codes(rgb(), 3), (std::vector<int32_t>{3, 0, 0}));
    EXPECT_EQ(countAfterReading(slots({0, 2}), "2"), 2) << "an agreeing count changes nothing";
    EXPECT_EQ(codes(rgb(), 3), (std::vector<int32_t>{3, 0, 3}));
    EXPECT_EQ(countAfterReading("", ""), 0);
}

TEST_F(ProfileListFile, ReadsBackWhatItWroteButForTheSeventhColumn)
{
    ProfileList full{};
    for (int i = 0; i < kProfileSlots; ++i)
        full.records[i] = {i, 1 + i % 6, -2147483647 - 1, "<a & \"b\">.icc", "\xC3\xA9\xF0\x9F\x8E\xA8\n\t",
                           5, 0};
    full.iNum = kProfileSlots;
    ProfileList withColumn7 = full;
    withColumn7.records[0].TableColumn7 = 42;
    writeListFile(listFileText(withColumn7, ProfileList{}, listOf({record(3)})));
    rgb().records[1].TableColumn7 = 9;
    ASSERT_EQ(readAll(), 0);
    full.records[1].TableColumn7 = 9;
    EXPECT_EQ(memcmp(&rgb(), &full, sizeof full), 0);
    EXPECT_EQ(sim().iNum, 0);
    EXPECT_EQ(nameText(dst().records[0].ProfileName), "Profile 3");
}

TEST_F(ProfileListFile, AFieldWithoutEntryIsLeftAsItWas)
{
    writeListFile(fileWithRgb(classEntries(slots({0}))));
    rgb().records[0] = record(0, "before.icc");
    rgb().iNum = 1;
    ASSERT_EQ(readAll(), 0);
    EXPECT_EQ(rgb().records[0].InMenu, 3);
    EXPECT_EQ(nameText(rgb().records[0].FileName), "before.icc");
}

TEST_F(ProfileListFile, PythonReadsFiveHundredEntriesInEveryField)
{
    ProfileList odd = listOf({record(4, std::string(29, 'x') + "\xE6\x97\xA5"), record(6, "ok.icc")});
    std::string text = listFileText(odd, ProfileList{}, ProfileList{});
    ProcessResult result = runProcess(
        {"python3", "-c",
         "import plistlib,sys\n"
         "d=plistlib.loads(sys.stdin.buffer.read())\n"
         "assert d['PlistVersion']==1 and d['RGB']['iNum']==2 and d['RGB']['InMenu']['InMenu0001']==6\n"
         "print(sorted(len(f) for c in ('RGB','SIM','DST') for f in d[c].values() if f.__class__ is dict))\n"
         "print(d['RGB']['FileName']['FileName0000'], repr(d['SIM']['ProfileName']['ProfileName0499']))"},
        {.input = text});
    std::string counts = "[500";
    for (int i = 1; i < 18; ++i)
        counts += ", 500";
    EXPECT_EQ(result.out, counts + "]\n" + std::string(29, 'x') + " ''\n") << result.err;
}

TEST_F(ProfileListFile, NamesAreCutAt31BytesAndTheirRestSurvivesTheNextWrite)
{
    struct {
        std::string name, stored;
    } rows[] = {
        {std::string(40, 'a'), std::string(31, 'a')},
        {std::string(30, 'a') + "\xC3\xA9", std::string(30, 'a')},
        {std::string(29, 'a') + "\xF0\x9F\x8E\xA8", std::string(29, 'a')},
        {"\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E", "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E"},
    };
    for (auto& [name, stored] : rows) {
        writeListFile(
            fileWithRgb(classEntries(slots({0}), "<key>FileName0000</key><string>" + name + "</string>")));
        rgb() = {};
        ASSERT_EQ(readAll(), 0);
        EXPECT_EQ(nameText(rgb().records[0].FileName), name.substr(0, 31));
        writeListFile(listFileText(rgb(), sim(), dst()));
        rgb() = {};
        ASSERT_EQ(readAll(), 0);
        EXPECT_EQ(nameText(rgb().records[0].FileName), stored);
        EXPECT_EQ(rgb().records[0].InMenu, 3);
    }
}

TEST_F(ProfileListFile, ANameThatIsNoTextIsLeftOutOfTheFileAndNothingElseIs)
{
    for (const char* name :
         {"\xFF\xFE.icc", "B\xFCro.icc", "bell\x07.icc", "\xED\xA0\x80", "\x80", "\xEF\xBF\xBF"}) {
        ProfileRecord bad = record(6, name);
        writeListFile(listFileText(listOf({bad, record(4)}), ProfileList{}, ProfileList{}));
        rgb() = {};
        ASSERT_EQ(readAll(), 0) << name;
        EXPECT_EQ(nameText(rgb().records[0].FileName), "");
        EXPECT_EQ(nameText(rgb().records[0].ProfileName), "Profile 6");
        EXPECT_EQ(nameText(rgb().records[1].FileName), "file4.icc");
        EXPECT_EQ(rgb().iNum, 2);
    }
    ProfileRecord unterminated = record(6);
    memset(unterminated.ProfileName, 'p', kProfileNameSize);
    writeListFile(listFileText(listOf({unterminated}), ProfileList{}, ProfileList{}));
    ASSERT_EQ(readAll(), 0);
    EXPECT_EQ(nameText(rgb().records[0].ProfileName), std::string(31, 'p'));
}

TEST_F(ProfileListFile, EachVersionOfTheFileIsOpenedOnce)
{
    writeListFile(listFileText(listOf({record(3)}), ProfileList{}, ProfileList{}));
    sleepMilliseconds(50); // past the clock tick of the write
    int watch = inotify_init1(IN_NONBLOCK);
    ASSERT_GE(inotify_add_watch(watch, currentListPath().c_str(), IN_OPEN), 0);
    for (int row = 0; row < 7; ++row)
        ASSERT_EQ(VelPListReadProfile_Dict(&lists[row % 3], row % 3), 0);
    char events[4096];
    EXPECT_EQ(read(watch, events, sizeof events), static_cast<ssize_t>(sizeof(inotify_event)));
    close(watch);
}

TEST_F(ProfileListFile, AChangeOfTheSameLengthInTheSameInstantIsSeen)
{
    for (int round = 0; round < 50; ++round) {
        int32_t code = 1 + round % 6;
        writeListFile(fileWithRgb(
            classEntries("<key>InMenu0000</key><integer>" + std::to_string(code) + "</integer>")));
        rgb() = {};
        ASSERT_EQ(readAll(), 0);
        ASSERT_EQ(rgb().records[0].InMenu, code);
    }
    std::filesystem::remove(currentListPath());
    EXPECT_EQ(readAll(), -1);
}

TEST_F(ProfileListFile, ListPathsFollowTheLoginNameAndAreCutAt254Bytes)
{
    std::string folder =
        sandbox.path().string() + "/Library/Printers/QUORVEX/Preferences/vendor.quorvex.printers.R4270/";
    EXPECT_EQ(currentListPath("anna"), folder + "anna-R4270-profile.plist");
    EXPECT_EQ(previousListPath("anna"), folder + "anna-R4270-profile.prev.plist");
    EXPECT_EQ(currentListPath(), currentListPath(loginName()));
    EXPECT_EQ(currentListPath(std::string(300, 'n')).size(), sandbox.path().string().size() + 254);
    EXPECT_EQ(currentListPath(""), "");
}
