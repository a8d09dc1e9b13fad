#include "ListFixture.h"

#include <fstream>
#include <sys/inotify.h>
#include <unistd.h>

namespace {

class ProfileListFile : public ListFixture {};

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
    const struct {
        std::initializer_list<int> used;
        const char* count;
        std::vector<int32_t> codes;
    } rows[] = {
        {{0, 1}, "", {3, 3, 0}},  {{0, 1}, "400", {3, 3, 0}}, {{0, 1}, "-1", {3, 3, 0}},
        {{0, 2}, "3", {3, 0, 0}}, {{0, 2}, "2", {3, 0, 3}}, // an agreeing count changes nothing
        {{}, "", {0, 0, 0}},
    };
    for (const auto& [used, count, expected] : rows) {
        std::string entry = "<key>iNum</key><integer>" + std::string(count) + "</integer>";
        writeListFile(fileWithRgb(classEntries(slots(used), "", *count == '\0' ? "" : entry)));
        rgb() = {};
        EXPECT_EQ(readAll(), 0);
        EXPECT_EQ(rgb().iNum, static_cast<int32_t>(used.size()));
        EXPECT_EQ(codes(rgb(), 3), expected) << count;
    }
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

TEST_F(ProfileListFile, AFieldWithoutEntryIsLeftAsItWasAndThereIsNoSlot500)
{
    writeListFile(fileWithRgb(classEntries(slots({0}) + "<key>InMenu0500</key><integer>-1</integer>")));
    rgb().records[0] = record(0, "before.icc");
    sim() = listOf({record(3), record(3)});
    rgb().iNum = 1;
    ASSERT_EQ(readAll(), 0);
    EXPECT_EQ(rgb().records[0].InMenu, 3);
    EXPECT_EQ(nameText(rgb().records[0].FileName), "before.icc");
    EXPECT_EQ(codes(sim(), 3), (std::vector<int32_t>{3, 3, 0})) << "written past the list before it";
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

TEST_F(ProfileListFile, NamesHave31BytesAndWhatIsNoTextIsLeftOutOfTheFileAndNothingElseIs)
{
    const std::string long31(31, 'a'), japanese = "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E";
    const std::pair<std::string, std::string> rows[] = {
        {long31, long31},
        {long31 + "a", long31}, // fills the field, without a terminator
        {std::string(30, 'a') + "\xC3\xA9", std::string(30, 'a')},
        {std::string(29, 'a') + "\xF0\x9F\x8E\xA8", std::string(29, 'a')},
        {japanese, japanese},
        {"\xFF\xFE.icc", ""},
        {"B\xFCro.icc", ""},
        {"bell\x07.icc", ""},
        {"\xED\xA0\x80", ""},
        {"\x80", ""},
        {"\xEF\xBF\xBF", ""},
    };
    for (const auto& [name, stored] : rows) {
        ProfileRecord odd = record(6);
        setNameText(odd.FileName, name, kProfileNameSize);
        EXPECT_EQ(nameText(odd.FileName), name.substr(0, kProfileNameSize));
        writeListFile(listFileText(listOf({odd, record(4)}), {}, {}));
        EXPECT_EQ(readFile(currentListPath()).find(std::string(32, 'a')), std::string::npos);
        rgb() = {};
        ASSERT_EQ(readAll(), 0) << name;
        EXPECT_EQ(nameText(rgb().records[0].FileName), stored);
        EXPECT_EQ(nameText(rgb().records[0].ProfileName), "Profile 6");
        EXPECT_EQ(nameText(rgb().records[1].FileName), "file4.icc");
        if (stored.empty())
            continue;
        writeListFile(
            fileWithRgb(classEntries(slots({0}), "<key>FileName0000</key><string>" + name + "</string>")));
        ASSERT_EQ(readAll(), 0);
        EXPECT_EQ(nameText(rgb().records[0].FileName), name.substr(0, 31)) << "cut inside a character too";
    }
}

TEST_F(ProfileListFile, AVersionIsParsedOnceButNotTrustedInTheInstantOfItsChange)
{
    const std::string text = fileWithRgb(classEntries("<key>InMenu0000</key><integer>1</integer>"));
    writeListFile(text);
    std::fstream file(currentListPath());
    int watch = inotify_init1(IN_NONBLOCK), openedAgain = 0;
    ASSERT_GE(inotify_add_watch(watch, currentListPath().c_str(), IN_OPEN), 0);
    auto wasOpened = [&] {
        char events[256];
        return ::read(watch, events, sizeof events) > 0;
    };
    for (int round = 0; round < 50; ++round) {
        int32_t code = 1 + round % 6;
        file.seekp(static_cast<std::streamoff>(text.find("1</integer>"))) << code << std::flush;
        ASSERT_EQ(readAll(), 0);
        ASSERT_EQ(rgb().records[0].InMenu, code);
        EXPECT_TRUE(wasOpened());
        ASSERT_EQ(readAll(), 0);
        openedAgain += wasOpened();
    }
    EXPECT_GT(openedAgain, 0) << "a change in the same tick of the clock may leave the times as they are";
    sleepMilliseconds(50);
    EXPECT_EQ(readAll(), 0);
    (void)wasOpened();
    EXPECT_EQ(readAll(), 0);
    EXPECT_FALSE(wasOpened());
    close(watch);
    std::filesystem::remove(currentListPath());
    EXPECT_EQ(readAll(), -1);
    EXPECT_EQ(currentListPath(std::string(300, 'n')).size(), sandbox.path().string().size() + 254);
}
