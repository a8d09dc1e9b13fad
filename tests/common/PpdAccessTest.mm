#include "common/TableFixture.h"

#include <set>

class PpdAccess : public TableFixture {
protected:
    std::set<std::string> marks() const
    {
        std::set<std::string> result;
        for (ppd_option_t* o = ppdFirstOption(ppd); o != nullptr; o = ppdNextOption(ppd)) {
            for (int i = 0; i < o->num_choices; ++i) {
                bool found = o->choices[i].marked != 0;
                if (o->ui != PPD_UI_PICKMANY)
                    EXPECT_EQ(ppdIsMarked(ppd, o->keyword, o->choices[i].choice) != 0, found)
                        << o->keyword << o->choices[i].choice;
                if (found)
                    result.insert(std::string(o->keyword) + "=" + o->choices[i].choice);
            }
        }
        return result;
    }
};

TEST_F(PpdAccess, KnowsTheEncodingsByTheirExactNames)
{
    struct Case {
        const char* name;
        int string;
        CFStringEncoding cf;
    };
    ppd_file_t file = {};
    for (const Case& c :
         {Case{"ISOLatin1", 5, 0x0201}, Case{"WindowsANSI", 12, 0x0500}, Case{"JIS83-RKSJ", 8, 0x0A01},
          Case{"UTF-8", 4, 0x08000100}, Case{"UTF8", 4, 0x08000100}, Case{"utf-8", 30, 0},
          Case{"ISOLatin1 ", 30, 0}, Case{"MacStandard", 30, 0}, Case{"", 30, 0}, Case{nullptr, 30, 0}}) {
        file.lang_encoding = const_cast<char*>(c.name);
        EXPECT_EQ((int)[PDECommon commonGetEncodingFromPPD:&file], c.string) << (c.name ? c.name : "null");
        EXPECT_EQ([PDECommon commonGetCFStringEncodingFromPPD:&file], c.cf);
    }
    EXPECT_EQ((int)[PDECommon commonGetEncodingFromPPD:nullptr], 30);
    EXPECT_EQ([PDECommon commonGetCFStringEncodingFromPPD:nullptr], 0u);
}

TEST_F(PpdAccess, DecodesTextsInThePpdsEncodingAndElseAsMacRoman)
{
    ppd_file_t file = {};
    // Cut at 80 bytes, within its last character.
    const std::string whole(78, 'x'), cut = whole + "\xe6\x97";
    struct Case {
        const char* encoding;
        const char* bytes;
        const char* text;
    };
    for (const Case& c :
         {Case{"WindowsANSI", "\x80", "€"}, Case{"JIS83-RKSJ", "\x93\xfa", "日"},
          Case{"ISOLatin1", "\xe9", "é"}, Case{nullptr, "\x8e", "é"}, Case{"UTF-8", "\xff\x8e", "ˇé"},
          Case{"JIS83-RKSJ", "\x93", "ì"}, Case{"UTF-8", cut.c_str(), whole.c_str()}}) {
        file.lang_encoding = const_cast<char*>(c.encoding);
        EXPECT_STREQ(
            [[PDECommon commonGetTextFromPPDBytes:c.bytes
                                         encoding:[PDECommon commonGetEncodingFromPPD:&file]] UTF8String],
            c.text);
    }
}

TEST_F(PpdAccess, ListsChoicesInOrderWithTheirConflicts)
{
    openPpd(samplePpd());
    ppdMarkOption(ppd, "VelColorAsGray", "True");
    CFMutableArrayRef choices = nullptr;
    EXPECT_EQ([PDECommon commonGetPPDArrayForUIOption:ppd key:"VelSimSource" array:&choices], 0);
    NSArray* expected = @[
        @[ @"VelSimSource", @"None", @"None", @"None", @"ConflictFalse" ],
        @[ @"VelSimSource", @"None", @"SWOP", @"SWOP Coated", @"ConflictTrue" ],
        @[ @"VelSimSource", @"None", @"Euroscale", @"Euroscale Coated", @"ConflictTrue" ],
        @[ @"VelSimSource", @"None", @"JapanColor", @"Japan Color 2001", @"ConflictTrue" ],
    ];
    EXPECT_TRUE([(NSArray*)choices isEqual:expected]) << [[(NSArray*)choices description] UTF8String];
    EXPECT_EQ([PDECommon commonFindPPDKeyPairsMatch:(NSArray*)choices option:@"VelSimSource" choice:@"SWOP"],
              1);
    EXPECT_EQ([PDECommon commonFindPPDKeyPairsMatch:(NSArray*)choices option:@"VelSimSource" choice:@"swop"],
              -1);
    CFRelease(choices);
    choices = nullptr;
    EXPECT_EQ([PDECommon commonGetPPDArrayForUIOption:ppd key:"NoSuch" array:&choices], -30888);
    EXPECT_EQ([PDECommon commonGetPPDArrayForUIOption:nullptr key:"VelSimSource" array:&choices], -30888);
    EXPECT_EQ(choices, nullptr);
}

TEST_F(PpdAccess, LeavesTheMarksAsTheyWereWhenItTestsConflicts)
{
    openPpd(samplePpd());
    auto testAll = [&] {
        auto before = marks();
        for (ppd_option_t* o = ppdFirstOption(ppd); o != nullptr; o = ppdNextOption(ppd)) {
            // Paper sizes are libcups' own affair: marking one unmarks others.
            std::string keyword = o->keyword;
            if (keyword.compare(0, 3, "Vel") != 0)
                continue;
            for (int i = 0; i < o->num_choices; ++i)
                (void)[PDECommon commonIsPPDChoiceConflicted:ppd
                                                      option:keyword.c_str()
                                                      choice:o->choices[i].choice];
            (void)ppdFindOption(ppd, keyword.c_str());
        }
        EXPECT_EQ(marks(), before);
    };
    testAll();
    // libcups would mark a choice of such an option beside those that are marked.
    ppdFindOption(ppd, "VelEdgeType")->ui = PPD_UI_PICKMANY;
    ppdMarkOption(ppd, "VelEdgeType", "Strong");
    testAll();
    // Without a marked choice: a fresh PPD on which no defaults were marked.
    ppd_file_t* marked = ppd;
    ppd = ppdOpenFile((sandbox / "printer.ppd").c_str());
    EXPECT_TRUE(marks().empty());
    testAll();
    ppdMarkOption(ppd, "VelEconoMode", "True");
    testAll();
    EXPECT_TRUE([PDECommon commonIsPPDChoiceConflicted:ppd option:"VelEdgeType" choice:"Strong"]);
    EXPECT_FALSE([PDECommon commonIsPPDChoiceConflicted:ppd option:"VelEconoMode" choice:"True"]);
    EXPECT_FALSE([PDECommon commonIsPPDChoiceConflicted:ppd option:"NoSuch" choice:"True"]);
    ppdClose(ppd);
    ppd = marked;
}

TEST_F(PpdAccess, TakesDefaultsFromThePpd)
{
    std::string odd = replaced(samplePpd(), "*DefaultVelEdgeType: Medium", "*DefaultVelEdgeType: Nowhere");
    odd = replaced(odd, "*DefaultVelEconoMode: False", "*DefaultVelEconoMode: True");
    odd = withOption(odd, "VelBrightness");
    openPpd(odd);
    build({{makePopup(), PDEControlKindPopup, "VelEdgeType", nullptr, nullptr, kNoKey},
           {makeCheckBox(), PDEControlKindCheckBox, "VelEconoMode", "EconoMode", nullptr, kNoKey},
           {makePopup(), PDEControlKindPopup, "VelBrightness", nullptr, nullptr, kNoKey},
           {makePopup(), PDEControlKindPopup, "VelImageRGBSource", nullptr, nullptr, kNoKey}});
    std::vector<int> values;
    for (int i = 0; i < 4; ++i)
        values.push_back([PDECommon commonGetDefualtValueFromPPDWithSInt32:&table[i]]);
    EXPECT_EQ(values, (std::vector<int>{-1, 1, 0, 1}));
    EXPECT_EQ(table[2].choices, nullptr);
    EXPECT_STREQ([[[table[3].control itemAtIndex:3] representedObject] UTF8String], "AdobeRGB");
}

TEST_F(PpdAccess, FindsNoChoiceForABoxThatThePpdKnowsByHalf)
{
    openPpd(replaced(samplePpd(), "*VelEconoMode False/Off: \"userdict /VelEconoMode false put\"\n", ""));
    build({{makeCheckBox(), PDEControlKindCheckBox, "VelEconoMode", "EconoMode", "EconoMode", kNoKey}});
    [table[0].control setIntValue:1];
    EXPECT_EQ([PDECommon commonGetControlValueFromPPDWithSInt32:&table[0]], 0);
    EXPECT_STREQ([[PDECommon commonGetControlValueFromPPDWithNSString:&table[0]] UTF8String], "On");
    [table[0].control setIntValue:0];
    EXPECT_EQ([PDECommon commonGetControlValueFromPPDWithSInt32:&table[0]], -1);
    EXPECT_EQ([PDECommon commonGetControlValueFromPPDWithNSString:&table[0]], nil);
}

TEST_F(PpdAccess, KeepsOneItemAChoiceAlsoForEqualTitles)
{
    openPpd(replaced(samplePpd(), "*VelEdgeType Medium/Medium:", "*VelEdgeType Medium/Light:"));
    build({{makePopup(), PDEControlKindPopup, "VelEdgeType", nullptr, nullptr, kNoKey}});
    EXPECT_TRUE(([[table[0].control itemTitles] isEqual:@[ @"Off", @"Light", @"Light", @"Strong" ]]));
    EXPECT_STREQ([[[table[0].control itemAtIndex:2] representedObject] UTF8String], "Medium");
}
