#include "ListFixture.h"

namespace {

class HostileListFile : public ListFixture {
protected:
    /// Reads the file as it is now; a result other than -1 must be lists that follow the rules.
    int32_t read()
    {
        std::fill_n(lists.get(), kProfileListCount, ProfileList{});
        int32_t result = readAll();
        for (int i = 0; i < kProfileListCount; ++i) {
            EXPECT_TRUE(lists[i].iNum >= 0 && lists[i].iNum <= kProfileSlots) << lists[i].iNum;
            for (const ProfileRecord& r : lists[i].records)
                EXPECT_EQ(r.FileName[kProfileNameSize - 1] | r.ProfileName[kProfileNameSize - 1], 0);
        }
        return result;
    }

    int32_t readText(const std::string& text)
    {
        writeListFile(text);
        return read();
    }
};

std::string repeated(const std::string& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

const std::string kGoodSlot = "<key>InMenu0000</key><integer>3</integer>";

} // namespace

TEST_F(HostileListFile, DocumentsThatAreNoListFileAreRefused)
{
    const std::string good = fileWithRgb(classEntries(kGoodSlot));
    ASSERT_EQ(readText(good), 0);
    const std::string body = good.substr(good.find("<plist"));
    std::string bomb = "<!DOCTYPE plist [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;&a;&a;\">]>" + body;
    std::string external = "<!DOCTYPE plist [<!ENTITY x SYSTEM \"file:///etc/passwd\">]>" + body;
    for (const std::string& text :
         {std::string(), std::string("garbage"), std::string("bplist00\xD1\x01\x02", 11),
          std::string("{\"RGB\":{}}"), bomb, external, body + body, "<dict/>" + body,
          std::string("<plist><array/></plist>"), std::string("<plist><dict/><dict/></plist>"),
          std::string("<plist><dict><dict/></dict></plist>"),
          std::string("<plist><dict><key>RGB</key></dict></plist>"),
          std::string("<plist><dict>text<key>RGB</key><dict/></dict></plist>"),
          std::string("<plist><dict><key>RGB</key><nonsense/></dict></plist>"), good + std::string(1, '\0'),
          fileWithRgb(classEntries(kGoodSlot, "<key>FileName0000</key><string>\xFF</string>")),
          std::string(kLongestListFile, ' ') + body, std::string("\xFF\xFE<\0p\0", 6)})
        EXPECT_EQ(readText(text), -1) << text.substr(0, 60);
    for (int levels : {4, 1000000})
        EXPECT_EQ(readText("<plist><dict><key>RGB</key>" + repeated("<array>", levels) +
                           repeated("</array>", levels) + "</dict></plist>"),
                  -1);
    EXPECT_EQ(readText("\xEF\xBB\xBF" + good), 0) << "a byte order mark";
    EXPECT_EQ(readText("<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"x.dtd\">" + body), 0);
}

TEST_F(HostileListFile, ValuesOfAnotherTypeOrSizeCountAsAbsent)
{
    auto integer = [](const std::string& text) { return "<integer>" + text + "</integer>"; };
    const struct {
        std::string value;
        int32_t number;
        const char* name;
    } rows[] = {
        {integer("3"), 3, ""},
        {integer("\n -2147483648 "), INT32_MIN, ""},
        {integer("2147483648"), 0, ""},
        {integer("-9223372036854775809"), 0, ""},
        {integer("4294967297"), 0, ""},
        {integer("0x3"), 0, ""},
        {integer("3abc"), 0, ""},
        {integer(""), 0, ""},
        {integer("--3"), 0, ""},
        {integer("3 4"), 0, ""},
        {"<string>3</string>", 0, "3"},
        {"<real>3</real>", 0, ""},
        {"<data>Aw==</data>", 0, ""},
        {"<true/>", 0, ""},
        {"<dict/>", 0, ""},
    };
    for (const auto& [value, number, name] : rows) {
        ASSERT_EQ(readText(fileWithRgb(
                      classEntries("<key>InMenu0000</key>" + value, "<key>FileName0000</key>" + value))),
                  0);
        EXPECT_EQ(rgb().records[0].InMenu, number) << value;
        EXPECT_EQ(nameText(rgb().records[0].FileName), name) << value;
        std::string file = fileWithRgb(classEntries(""));
        size_t at = file.find("<key>Location</key><dict/>");
        EXPECT_EQ(readText(file.replace(at + 19, 7, value)), value == "<dict/>" ? 0 : -1) << value;
        EXPECT_EQ(readText("<plist>" + value + "</plist>"), -1) << value;
    }
}

TEST_F(HostileListFile, KeysThatNameNoSlotAreIgnoredAndOfTwoTheLastCounts)
{
    std::string others;
    for (const char* key : {"InMenu9999", "InMenu0500", "InMenu-001", "InMenu001", "InMenu00001",
                            "inmenu0001", "FileName0001", "InMenu 001", ""})
        others += std::string("<key>") + key + "</key><integer>3</integer>";
    ASSERT_EQ(
        readText(fileWithRgb(classEntries(kGoodSlot + others + "<key>InMenu0000</key><integer>6</integer>"))),
        0);
    EXPECT_EQ(rgb().iNum, 1);
    EXPECT_EQ(rgb().records[0].InMenu, 6);
    EXPECT_EQ(readText(fileWithRgb(classEntries(repeated(kGoodSlot, 90000)))), 0);
    EXPECT_EQ(readText(fileWithRgb(classEntries(kGoodSlot, repeated("<key></key><dict/>", 150000)))), 0);
}

TEST_F(HostileListFile, OddStringsAreReadSafelyAndWrittenAgain)
{
    struct {
        std::string xml, name;
    } rows[] = {
        {"<string>" + std::string(1000000, 'x') + "</string>", std::string(31, 'x')},
        {"<string>a&#0;b</string>", "a"},
        {"<string>a&#xD800;b</string>", ""},
        {"<string>a<!-- c -->b<![CDATA[<c>]]></string>", "ab<c>"},
        {"<string> </string>", " "},
        {"<string/>", ""},
    };
    for (auto& [xml, name] : rows) {
        ASSERT_EQ(readText(fileWithRgb(classEntries(kGoodSlot, "<key>FileName0000</key>" + xml))), 0)
            << xml.substr(0, 40);
        EXPECT_EQ(nameText(rgb().records[0].FileName), name);
        EXPECT_TRUE(isListFileText(listFileText(rgb(), sim(), dst())));
        EXPECT_EQ(readText(listFileText(rgb(), sim(), dst())), 0);
        EXPECT_EQ(rgb().iNum, 1);
    }
}

TEST_F(HostileListFile, ATruncatedFileIsRefusedWhereverItEnds)
{
    std::string good =
        fileWithRgb(classEntries(kGoodSlot, "<key>FileName0000</key><string>a&amp;b.icc</string>"));
    for (size_t length = 0; length < good.size(); ++length)
        EXPECT_EQ(readText(good.substr(0, length)), -1) << length;
}

TEST_F(HostileListFile, WhatIsNoOrdinaryFileIsRefusedWithoutWaiting)
{
    std::filesystem::create_directories(preferencesFolder());
    EXPECT_EQ(read(), -1) << "missing";
    for (const char* made :
         {"mkfifo $0", "mkdir $0", "ln -s /dev/zero $0", "ln -s $0 $0", "truncate -s 10G $0"}) {
        EXPECT_EQ(runProcess({"sh", "-c", made, currentListPath()}).status, 0);
        EXPECT_EQ(read(), -1) << made;
        std::filesystem::remove(currentListPath());
    }
}
