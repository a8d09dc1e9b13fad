#include "ListFixture.h"

#include <fstream>
#include <sys/inotify.h>
#include <unistd.h>

namespace {

class ProfileListFile : public ListFixture {
protected:
    /// The count and the first three slots of the first list that the text gives; "" when it is refused.
    std::string read(const std::string& text)
    {
        writeListFile(text);
        std::fill_n(lists.get(), kProfileListCount, ProfileList{});
        return readAll() == 0 ? std::to_string(rgb().iNum) + ": " + slots(rgb(), 3) : "";
    }
};

/// The text of a list file with two profiles and a hole between, in which `xml` stands for the value of
/// `key`.
std::string fileWith(const std::string& key, const std::string& xml)
{
    ProfileList list = listOf({record(3, "a"), {}, record(4, "c")});
    list.iNum = 2;
    std::string text = listFileText(list, {}, {});
    size_t at = text.find("<key>" + key + "</key>\n") + key.size() + 12;
    return text.replace(at, text.find('\n', at) - at, xml);
}

} // namespace

TEST_F(ProfileListFile, ValuesOfAnotherTypeOrSizeCountAsAbsentAndWhatLiesBehindAHoleIsLost)
{
    const std::string long31(31, 'x'), noCode = "1: 0 a, 0 , 0 , ", noName = "2: 3 , 0 , 4 c, ";
    const std::array<std::string, 3> rows[] = {
        {"iNum", "<integer>400</integer>", "2: 3 a, 0 , 0 , "},
        {"iNum", "<integer>2</integer>", "2: 3 a, 0 , 4 c, "}, // an agreeing count changes nothing
        {"InMenu0001", "<integer>5</integer>", "3: 3 a, 5 , 4 c, "},
        {"InMenu0000", "<integer> -2147483648 </integer>", "2: -2147483648 a, 0 , 4 c, "},
        {"InMenu0000", "<integer>2147483648</integer>", noCode},
        {"InMenu0000", "<integer>3 4</integer>", noCode},
        {"InMenu0000", "<real>3</real>", noCode},
        {"InMenu0000", "<string>3</string>", noCode},
        {"FileName0000", "<integer>3</integer>", noName},
        {"FileName0000", "<string>a&#xD800;b</string>", noName}, // half a surrogate pair
        {"FileName0000", "<string>n&#0;b</string>", "2: 3 n, 0 , 4 c, "},
        {"FileName0000", "<string>a<!-- c -->b<![CDATA[<c>]]></string>", "2: 3 ab<c>, 0 , 4 c, "},
        {"FileName0000", "<string>" + long31 + "x</string>", "2: 3 " + long31 + ", 0 , 4 c, "},
        {"FileName0000", "<string>\xFF</string>", ""},
        {"InMenu0001", "<array/>", "2: 3 a, 0 , 4 c, "},
        {"InMenu0001", "<array><true/></array>", ""}, // one level too deep
    };
    for (const char* other : {"InMenu001", "InMenu00001", "inmenu0001", "InMenu-001", "IndexOnDevice0001"})
        EXPECT_EQ(
            read(fileWith("InMenu0001", std::string("<true/><key>") + other + "</key><integer>5</integer>")),
            "2: 3 a, 0 , 4 c, ");
    for (const auto& [key, xml, expected] : rows)
        EXPECT_EQ(read(fileWith(key, xml)), expected) << key << xml;
}

TEST_F(ProfileListFile, ReadsBackWhatItWroteButForTheSeventhColumn)
{
    ProfileList full{};
    for (int i = 0; i < kProfileSlots; ++i)
        full.records[i] = {i, 1 + i % 6, INT32_MIN, "<a & \"b\">.icc", "\xC3\xA9\xF0\x9F\x8E\xA8\n\t", 5, 42};
    full.iNum = kProfileSlots;
    ASSERT_NE(read(listFileText(full, {}, listOf({record(3)}))), "");
    EXPECT_EQ(nameText(dst().records[0].ProfileName), "Profile 3");
    for (ProfileRecord& r : full.records)
        r.TableColumn7 = 0;
    EXPECT_EQ(memcmp(&rgb(), &full, sizeof full), 0);
}

TEST_F(ProfileListFile, AFieldWithoutEntryIsLeftAsItWasAndThereIsNoSlot500)
{
    std::string text = fileWith("InMenu0001", "<integer>-1</integer>");
    text.replace(text.find("InMenu0001"), 10, "InMenu0500");
    text.replace(text.find("InMenu0000", text.find("<key>SIM")), 10, "InMenu9999");
    writeListFile(text.replace(text.find("FileName0000"), 12, "FileName"));
    rgb().records[0] = record(0, "before.icc");
    sim() = listOf({record(3), record(3)});
    ASSERT_EQ(readAll(), 0);
    EXPECT_EQ(slots(rgb(), 3), "3 before.icc, 0 , 4 c, ");
    EXPECT_EQ(slots(sim(), 2), "3 , 0 , ") << "written past the list before it";
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
        EXPECT_EQ(read(listFileText(listOf({odd, record(4)}), {}, {})),
                  "2: 6 " + stored + ", 4 file4.icc, 0 , ");
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
          body.substr(0, body.rfind("</plist>")) + "<dict/></plist>",
          std::string("<plist><dict><dict/></dict></plist>"), good + std::string(1, '\0'),
          std::string(kLongestListFile, ' ') + body, good.substr(0, good.size() - 9)})
        EXPECT_EQ(read(text), "") << text.substr(0, 60);
    EXPECT_NE(read("\xEF\xBB\xBF" + good), "") << "a byte order mark";
    for (const char* made :
         {"true", "mkfifo $0", "mkdir $0", "ln -s /dev/zero $0", "ln -s $0 $0", "truncate -s 1T $0"}) {
        std::filesystem::remove(currentListPath());
        EXPECT_EQ(runProcess({"sh", "-c", made, currentListPath()}).status, 0);
        EXPECT_EQ(readAll(), -1) << made;
    }
}

TEST_F(ProfileListFile, AVersionIsParsedOnceButNotTrustedInTheInstantOfItsChange)
{
    const std::string text = fileWith("InMenu0000", "<integer>1</integer>");
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
