#include "ListFixture.h"

#include "profiles/ProfilePath.h"

TEST(ProfilePath, CodingIsTheInverseOfDecodingForEveryByteAndNotHexadecimal)
{
    EXPECT_EQ(encodePrinterPath("/az\xFF"), "2?617:??");
    EXPECT_EQ(encodePrinterPath(""), "");
    std::string all;
    for (char32_t c = 0; c < 0x80; ++c)
        all += static_cast<char>(c);
    all += "\xC3\xA9\xE6\x97\xA5\xF0\x9F\x8E\xA8";
    EXPECT_EQ(decodePrinterPath(encodePrinterPath(all)), all);
}

TEST(ProfilePath, DecodingComputesModulo256AndRefusesWhatIsNoText)
{
    EXPECT_EQ(decodePrinterPath("@1"), "\x01") << "48 + 16: the first character counts modulo 16";
    EXPECT_EQ(decodePrinterPath("2?6"), "/") << "a character without a partner";
    EXPECT_EQ(decodePrinterPath(std::string(1023, '2'))->size(), 511u);
    EXPECT_EQ(decodePrinterPath(std::string(1024, '2')), std::nullopt);
    EXPECT_EQ(decodePrinterPath("2\xC3\xA9"), std::nullopt) << "not ASCII";
    EXPECT_EQ(decodePrinterPath("??"), std::nullopt) << "not UTF-8";
}

TEST(ProfilePath, TheFolderFollowsTheLocation)
{
    EXPECT_EQ(printerPath(record(3, "a.icc", kOnDisk)), "/ata1a/data/USfiles/Profiles/a.icc");
    EXPECT_EQ(printerPath(record(3, "a.icc", kOnCard)), "/ataCf1a/data/USfiles/Profiles/a.icc");
    ProfileRecord full = record(3, "a.icc", 0);
    EXPECT_EQ(printerPath(full), "a.icc");
    memset(full.FileName, 'f', kProfileNameSize);
    EXPECT_EQ(printerPath(full), std::string(32, 'f')) << "a name without terminator";
}
