#include "ListFixture.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

namespace {

class HostileListFile : public ListFixture {
protected:
    /// Reads the file; a result other than -1 must be lists that follow the rules.
    int32_t readChecked()
    {
        for (int i = 0; i < kProfileListCount; ++i)
            lists[i] = {};
        int32_t result = readAll();
        for (int i = 0; i < kProfileListCount; ++i) {
            EXPECT_GE(lists[i].iNum, 0);
            EXPECT_LE(lists[i].iNum, kProfileSlots);
            for (const ProfileRecord& r : lists[i].records)
                EXPECT_EQ(r.FileName[kProfileNameSize - 1] | r.ProfileName[kProfileNameSize - 1], 0);
        }
        return result;
    }

    int32_t readText(const std::string& text)
    {
        writeListFile(text);
        return readChecked();
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
    EXPECT_EQ(readText("\xEF\xBB\xBF" + good), 0) << "a byte order mark";
    EXPECT_EQ(readText("<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"x.dtd\">" + body), 0);
}

TEST_F(HostileListFile, NestingIsRefusedOnASmallStack)
{
    pthread_attr_t small;
    pthread_attr_init(&small);
    pthread_attr_setstacksize(&small, 512 * 1024);
    for (int levels : {6, 100, 10000, 400000}) {
        writeListFile("<plist><dict><key>RGB</key>" + repeated("<array>", levels) +
                      repeated("</array>", levels) + "</dict></plist>");
        pthread_t thread;
        auto run = [](void* lists) -> void* {
            ProfileList* list = static_cast<ProfileList*>(lists);
            EXPECT_EQ(VelPListReadProfile_Dict(list, kRgbList), -1);
            return nullptr;
        };
        ASSERT_EQ(pthread_create(&thread, &small, run, lists.get()), 0);
        pthread_join(thread, nullptr);
    }
    pthread_attr_destroy(&small);
}

TEST_F(HostileListFile, IntegersThatDoNotFitAreNoEntries)
{
    for (const char* text : {"99999999999999999999999999", "-9223372036854775809", "4294967297", "2147483648",
                             "0x3", "3abc", "", "  ", "3.0", "--3", "3 4"}) {
        ASSERT_EQ(readText(fileWithRgb(
                      classEntries("<key>InMenu0000</key><integer>" + std::string(text) + "</integer>"))),
                  0);
        EXPECT_EQ(rgb().records[0].InMenu, 0) << text;
    }
    ASSERT_EQ(readText(fileWithRgb(classEntries("<key>InMenu0000</key><integer>\n -2147483648 </integer>"))),
              0);
    EXPECT_EQ(rgb().records[0].InMenu, INT32_MIN);
}

TEST_F(HostileListFile, WrongTypesCountAsAbsent)
{
    const std::string types[] = {"<string>3</string>", "<integer>3</integer>", "<real>3</real>", "<true/>",
                                 "<date>x</date>",     "<data>Aw==</data>",    "<array/>",       "<dict/>"};
    for (const std::string& type : types) {
        bool integer = type.find("integer") != std::string::npos,
             string = type.find("string") != std::string::npos;
        ASSERT_EQ(readText(fileWithRgb(
                      classEntries("<key>InMenu0000</key>" + type, "<key>FileName0000</key>" + type))),
                  0);
        EXPECT_EQ(rgb().records[0].InMenu, integer ? 3 : 0) << type;
        EXPECT_EQ(nameText(rgb().records[0].FileName), string ? "3" : "") << type;
        int32_t asClass = type == "<dict/>" ? 0 : -1;
        std::string good = fileWithRgb(classEntries(""));
        size_t at = good.find("<key>Location</key><dict/>");
        EXPECT_EQ(readText(good.substr(0, at) + "<key>Location</key>" + type + good.substr(at + 26)), asClass)
            << type;
        EXPECT_EQ(readText("<plist><dict><key>RGB</key>" + type + "</dict></plist>"), -1) << type;
        EXPECT_EQ(readText("<plist>" + type + "</plist>"), -1) << type;
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

TEST_F(HostileListFile, TruncatedOrDamagedFilesGiveAFailureOrAValidList)
{
    std::string good =
        fileWithRgb(classEntries(kGoodSlot, "<key>FileName0000</key><string>a&amp;b.icc</string>"));
    for (size_t length = 0; length < good.size(); ++length)
        EXPECT_EQ(readText(good.substr(0, length)), -1) << length;
    for (size_t bit = 0; bit < good.size() * 8; bit += 3) {
        std::string damaged = good;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << (bit % 8)));
        int32_t result = readText(damaged);
        EXPECT_TRUE(result == 0 || result == -1);
    }
}

TEST_F(HostileListFile, WhatIsNoOrdinaryFileIsRefusedWithoutWaiting)
{
    std::filesystem::create_directories(preferencesFolder());
    const std::string path = currentListPath();
    EXPECT_EQ(readChecked(), -1) << "missing";
    ASSERT_EQ(mkfifo(path.c_str(), 0644), 0);
    EXPECT_EQ(readChecked(), -1) << "FIFO";
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    EXPECT_EQ(readChecked(), -1) << "folder";
    std::filesystem::remove(path);
    std::filesystem::create_symlink("/dev/zero", path);
    EXPECT_EQ(readChecked(), -1) << "device";
    std::filesystem::remove(path);
    std::filesystem::create_symlink(path, path);
    EXPECT_EQ(readChecked(), -1) << "link to itself";
    std::filesystem::remove(path);
    writeListFile("<plist>");
    std::filesystem::resize_file(path, 10ull << 30);
    EXPECT_EQ(readChecked(), -1) << "10 GB of nothing";
}
