#include "ListFixture.h"

#include "profiles/ProfilePath.h"

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
