#include "ListFixture.h"

#include <fstream>
#include <sys/inotify.h>
#include <unistd.h>

namespace {

class ProfileListFile : public ListFixture {
protected:
    /// Reads the text into zeroed lists.
    int32_t readText(const std::string& text)
    {
        writeListFile(text);
        std::fill_n(lists.get(), kProfileListCount, ProfileList{});
        return readAll();
    }
};

std::string integer(const std::string& text)
{
    return "<integer>" + text + "</integer>";
}

} // namespace

TEST_F(ProfileListFile, CountFollowsTheUsedSlotsAndWhatLiesBehindAHoleIsLost)
{
    const std::tuple<std::vector<int32_t>, const char*, std::vector<int32_t>> rows[] = {
        {{3, 3, 0}, "400", {3, 3, 0}},
        {{3, 0, 3}, "3", {3, 0, 0}},
        {{3, 0, 3}, "2", {3, 0, 3}}, // an agreeing count changes nothing
    };
    for (const auto& [stored, count, expected] : rows) {
        ProfileList list = listOf({record(stored[0]), record(stored[1]), record(stored[2])});
        ASSERT_EQ(readText(fileWith("iNum", integer(count), list)), 0);
        EXPECT_EQ(rgb().iNum, 3 - std::count(stored.begin(), stored.end(), 0)) << count;
        EXPECT_EQ(codes(rgb(), 3), expected) << count;
    }
}

TEST_F(ProfileListFile, ReadsBackWhatItWroteButForTheSeventhColumn)
{
    ProfileList full{};
    for (int i = 0; i < kProfileSlots; ++i)
        full.records[i] = {i, 1 + i % 6, INT32_MIN, "<a & \"b\">.icc", "\xC3\xA9\xF0\x9F\x8E\xA8\n\t", 5, 42};
    full.iNum = kProfileSlots;
    ASSERT_EQ(readText(listFileText(full, {}, listOf({record(3)}))), 0);
    EXPECT_EQ(nameText(dst().records[0].ProfileName), "Profile 3");
    for (ProfileRecord& r : full.records)
        r.TableColumn7 = 0;
    EXPECT_EQ(memcmp(&rgb(), &full, sizeof full), 0);
}

TEST_F(ProfileListFile, AFieldWithoutEntryIsLeftAsItWasAndOtherKeysAreNoSlots)
{
    std::string text = fileWith("InMenu0001", integer("-1"), listOf({record(3, "file.icc")}));
    text.replace(text.find("InMenu0001"), 10, "InMenu0500");
    for (const char* key : {"InMenu0002", "inmenu0001", "InMenu-001"})
        text.replace(text.find("IndexOnDevice00"), 17, key);
    text.replace(text.find("InMenu0000", text.find("<key>SIM")), 10, "InMenu9999");
    writeListFile(text.replace(text.find("FileName0000"), 12, "FileName"));
    rgb().records[0] = record(0, "before.icc");
    sim() = listOf({record(3), record(3)});
    ASSERT_EQ(readAll(), 0);
    EXPECT_EQ(nameText(rgb().records[0].FileName), "before.icc");
    EXPECT_EQ(rgb().iNum, 1);
    EXPECT_EQ(codes(sim(), 2), (std::vector<int32_t>{3, 0})) << "written past the list before it";
}

TEST_F(ProfileListFile, NamesHave31BytesAndWhatIsNoTextIsLeftOutOfTheFileAndNothingElseIs)
{
    const std::string long31(31, 'a');
    const std::pair<std::string, std::string> rows[] = {
        {long31, long31},
        {long31 + "a", long31}, // fills the field, without a terminator
        {std::string(30, 'a') + "\xC3\xA9", std::string(30, 'a')},
        {std::string(29, 'a') + "\xF0\x9F\x8E\xA8", std::string(29, 'a')},
        {"B\xFCro.icc", ""},
        {"\xEF\xBF\xBF", ""},
    };
    for (const auto& [name, stored] : rows) {
        ProfileRecord odd = record(6);
        setNameText(odd.FileName, name, kProfileNameSize);
        ASSERT_EQ(readText(listFileText(listOf({odd, record(4)}), {}, {})), 0) << name;
        EXPECT_EQ(nameText(rgb().records[0].FileName), stored);
        EXPECT_EQ(nameText(rgb().records[1].FileName), "file4.icc");
        if (stored.empty())
            continue;
        ASSERT_EQ(readText(fileWith("FileName0000", "<string>" + name + "</string>", listOf({odd}))), 0);
        EXPECT_EQ(nameText(rgb().records[0].FileName), name.substr(0, 31)) << "cut inside a character too";
    }
}

TEST_F(ProfileListFile, ValuesOfAnotherTypeOrSizeCountAsAbsent)
{
    const std::tuple<std::string, int32_t, std::string> rows[] = {
        {integer("3"), 3, ""},
        {integer(" -2147483648 "), INT32_MIN, ""},
        {integer("2147483648"), 0, ""},
        {integer("3 4"), 0, ""},
        {"<real>3</real>", 0, ""},
        {"<string>3</string>", 0, "3"},
        {"<string>a&#0;b</string>", 0, "a"},
        {"<string>a&#xD800;b</string>", 0, ""}, // half a surrogate pair
        {"<string>a<!-- c -->b<![CDATA[<c>]]></string>", 0, "ab<c>"},
    };
    for (const auto& [value, number, name] : rows) {
        ASSERT_EQ(readText(fileWith("InMenu0000", value)), 0);
        EXPECT_EQ(rgb().records[0].InMenu, number) << value;
        ASSERT_EQ(readText(fileWith("FileName0000", value, listOf({record(3)}))), 0);
        EXPECT_EQ(nameText(rgb().records[0].FileName), name) << value;
    }
}

TEST_F(ProfileListFile, DocumentsThatAreNoListFileAreRefused)
{
    const std::string good = listFileText({}, {}, {}), body = good.substr(good.find("<plist"));
    std::string deep = "<plist><dict><key>RGB</key>";
    for (const char* tag : {"<array>", "</array>"})
        for (int i = 0; i < 1000000; ++i)
            deep += tag;
    deep += "</dict></plist>";
    for (const std::string& text :
         {std::string(), std::string("bplist00\xD1\x01\x02", 11), body + body, deep,
          "<!DOCTYPE plist [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;&a;&a;\">]>" + body,
          std::string("<plist><dict/><dict/></plist>"), std::string("<plist><dict><dict/></dict></plist>"),
          good + std::string(1, '\0'), fileWith("FileName0000", "<string>\xFF</string>"),
          std::string(kLongestListFile, ' ') + body, fileWith("Location", integer("1")),
          good.substr(0, good.size() - 9)})
        EXPECT_EQ(readText(text), -1) << text.substr(0, 60);
    EXPECT_EQ(readText("\xEF\xBB\xBF" + good), 0) << "a byte order mark";
    for (const char* made : {"true", "mkfifo $0", "mkdir $0", "ln -s /dev/zero $0", "truncate -s 10G $0"}) {
        std::filesystem::remove(currentListPath());
        EXPECT_EQ(runProcess({"sh", "-c", made, currentListPath()}).status, 0);
        EXPECT_EQ(readAll(), -1) << made;
    }
}

TEST_F(ProfileListFile, AVersionIsParsedOnceButNotTrustedInTheInstantOfItsChange)
{
    const std::string text = fileWith("InMenu0000", integer("1"));
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
    close(watch);
}
