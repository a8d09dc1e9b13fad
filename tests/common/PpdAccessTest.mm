#include "common/TableFixture.h"
#include "panels/PresetConstraints.h"

#include <set>

class PpdAccess : public TableFixture {
protected:
    std::set<std::string> marks() const
    {
        std::set<std::string> result;
        for (ppd_option_t* o = ppdFirstOption(ppd); o != nullptr; o = ppdNextOption(ppd)) {
            for (int i = 0; i < o->num_choices; ++i)
                if (o->choices[i].marked != 0)
                    result.insert(std::string(o->keyword) + "=" + o->choices[i].choice);
        }
        return result;
    }

    bool conflicts(const char* option, const char* choice)
    {
        return [PDECommon commonIsPPDChoiceConflicted:ppd option:option choice:choice] != NO;
    }

    void expectTestingToLeaveTheMarks()
    {
        auto before = marks();
        for (auto [option, choice] : {std::pair{"VelEconoMode", "True"},
                                      {"VelEdgeType", "Strong"},
                                      {"VelEdgeType", "Off"},
                                      {"VelSimSource", "SWOP"}})
            (void)conflicts(option, choice);
        EXPECT_EQ(marks(), before);
    }
};

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
    for (const Case& c : {Case{"WindowsANSI", "\x80", "€"},
                          {"JIS83-RKSJ", "\x93\xfa", "日"},
                          {"ISOLatin1", "\xe9", "é"},
                          {"utf-8", "\x8e", "é"},
                          {nullptr, "\x8e", "é"},
                          {"UTF-8", "\xff\x8e", "ˇé"},
                          {"JIS83-RKSJ", "\x93", "ì"},
                          {"UTF-8", cut.c_str(), whole.c_str()}}) {
        file.lang_encoding = const_cast<char*>(c.encoding);
        NSStringEncoding encoding = [PDECommon commonGetEncodingFromPPD:&file];
        NSString* text = [PDECommon commonGetTextFromPPDBytes:c.bytes encoding:encoding];
        EXPECT_STREQ([text UTF8String], c.text);
    }
}

TEST_F(PpdAccess, ListsChoicesInOrderWithTheirConflictsAndLeavesTheMarks)
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
    CFRelease(choices);
    EXPECT_EQ([PDECommon commonGetPPDArrayForUIOption:ppd key:"NoSuch" array:&choices], -30888);

    expectTestingToLeaveTheMarks();
    // libcups would mark a choice of such an option beside those that are marked.
    ppdFindOption(ppd, "VelEdgeType")->ui = PPD_UI_PICKMANY;
    ppdMarkOption(ppd, "VelEdgeType", "Strong");
    expectTestingToLeaveTheMarks();
    // A fresh PPD on which no defaults were marked.
    ppd = ppdOpenFile((sandbox / "printer.ppd").c_str());
    EXPECT_TRUE(marks().empty());
    expectTestingToLeaveTheMarks();
    ppdMarkOption(ppd, "VelEconoMode", "True");
    EXPECT_TRUE(conflicts("VelEdgeType", "Strong"));
    EXPECT_FALSE(conflicts("VelEconoMode", "True"));
    EXPECT_FALSE(conflicts("NoSuch", "True"));
    ppdClose(ppd);
}

TEST_F(PpdAccess, FindsNoChoiceForABoxThatThePpdKnowsByHalf)
{
    openPpd(replaced(samplePpd(), "*VelEconoMode False/Off: \"userdict /VelEconoMode false put\"\n", ""));
    build({row(PDEControlKindCheckBox, "VelEconoMode")});
    [table[0].control setIntValue:1];
    EXPECT_EQ([PDECommon commonGetControlValueFromPPDWithSInt32:&table[0]], 0);
    [table[0].control setIntValue:0];
    EXPECT_EQ([PDECommon commonGetControlValueFromPPDWithSInt32:&table[0]], -1);
    EXPECT_EQ([PDECommon commonGetControlValueFromPPDWithNSString:&table[0]], nil);
}

TEST_F(PpdAccess, SkipsRowsWithoutAnOptionAndStopsAtAMissingControl)
{
    openPpd(samplePpd());
    PDEControlItem missing = row(PDEControlKindPopup, "VelBrightness");
    missing.control = nil;
    build({row(PDEControlKindText, kNoKey), row(PDEControlKindPopup, "VelEdgeType"), missing,
           row(PDEControlKindPopup, "VelQuickColor")});
    NSMutableArray* keys = [NSMutableArray array];
    EXPECT_EQ([PDECommon commonAddPPDArray:keys table:table], 0);
    EXPECT_TRUE([keys isEqual:@[ @"VelEdgeType" ]]);
    EXPECT_EQ(table[3].choices, nullptr);
    [PDECommon commonDefaultFromPPDInfo:table];
    EXPECT_EQ([table[1].control indexOfSelectedItem], 2);
    // A value that the pop-up has no item for changes nothing, none clears it.
    for (auto [value, there] : {std::pair{1, 1}, {4, 1}, {-1, -1}}) {
        [PDECommon commonSetControlValueWithSInt32:&table[1] value:value];
        EXPECT_EQ([PDECommon commonGetControlValueWithSInt32:&table[1]], there);
    }

    PDEControlItem empty = kEndRow;
    PDEControlItem* tables[] = {table, &empty, nullptr, table};
    PDEControlItem* compound = [PDECommon commonControlTableCompound:tables count:4];
    EXPECT_EQ(compound[7].control, table[3].control);
    EXPECT_EQ(compound[8].kind, PDEControlKindEnd);
    free(compound);
    for (PDEControlItem* none : {&empty, (PDEControlItem*)nullptr}) {
        vColorPresetConstraints(none);
        EXPECT_EQ([PDECommon commonAddPPDArray:keys table:none], 0);
    }
}
