// What the panel's rows see of the PPD, of the session and of each other.
#include "common/ControlTable.h"
#include "common/PDECommon+ControlTable.h"
#include "common/PDECommon+PPD.h"
#include "common/PDECommon+Ticket.h"
#include "panels/PresetConstraints.h"

#include <PrintingObjects.h>
#include <gtest/gtest.h>

class PpdAccess : public ::testing::Test {
protected:
    ~PpdAccess() override { ppdClose(ppd); }

    std::string marks() const
    {
        std::string all;
        for (ppd_option_t* o = ppdFirstOption(ppd); o != nullptr; o = ppdNextOption(ppd))
            for (int i = 0; i < o->num_choices; ++i)
                if (o->choices[i].marked != 0)
                    all += std::string(o->keyword) + "=" + o->choices[i].choice + " ";
        return all;
    }
    bool conflicts(const char* option, const char* choice)
    {
        return [PDECommon commonIsPPDChoiceConflicted:ppd option:option choice:choice] != NO;
    }
    void expectTestingToLeaveTheMarks()
    {
        std::string before = marks();
        for (const char* choice : {"Strong", "Off"})
            conflicts("VelEdgeType", choice);
        conflicts("VelEconoMode", "True");
        conflicts("VelSimSource", "SWOP");
        EXPECT_EQ(marks(), before);
    }

    ppd_file_t* ppd = ppdOpenFile(PDE_SOURCE_DIR "/printer/R4270.ppd");
};

TEST_F(PpdAccess, DecodesTextsInThePpdsEncodingAndElseAsMacRoman)
{
    ppd_file_t file = {};
    // Cut at 80 bytes, within its last character.
    const std::string whole(78, 'x'), cut = whole + "\xe6\x97";
    struct {
        const char *encoding, *bytes, *text;
    } const cases[] = {
        {"WindowsANSI", "\x80", "€"},
        {"JIS83-RKSJ", "\x93\xfa", "日"},
        {"ISOLatin1", "\xe9", "é"},
        {"utf-8", "\x8e", "é"},
        {nullptr, "\x8e", "é"},
        {"UTF-8", "\xff\x8e", "ˇé"},
        {"UTF-8", cut.c_str(), whole.c_str()},
    };
    for (const auto& c : cases) {
        file.lang_encoding = const_cast<char*>(c.encoding);
        NSStringEncoding encoding = [PDECommon commonGetEncodingFromPPD:&file];
        EXPECT_STREQ([[PDECommon commonGetTextFromPPDBytes:c.bytes encoding:encoding] UTF8String], c.text);
    }
}

TEST_F(PpdAccess, ListsChoicesInOrderWithTheirConflictsAndLeavesTheMarks)
{
    EXPECT_EQ(marks(), "");
    expectTestingToLeaveTheMarks();
    ppdMarkOption(ppd, "VelEconoMode", "True");
    EXPECT_TRUE(conflicts("VelEdgeType", "Strong"));
    EXPECT_FALSE(conflicts("VelEconoMode", "True"));
    EXPECT_FALSE(conflicts("NoSuch", "True"));

    ppdMarkDefaults(ppd);
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
}

TEST_F(PpdAccess, IsWalkedInTablesAsFarAsTheirControlsGo)
{
    auto popup = [[[NSPopUpButton alloc] initWithFrame:NSMakeRect(0, 0, 200, 24)] autorelease];
    const PDEControlItem rows[] = {{popup, PDEControlKindPopup, "VelEdgeType", nullptr, nullptr, kNoKey},
                                   {nil, PDEControlKindPopup, "VelBrightness", nullptr, nullptr, kNoKey},
                                   {popup, PDEControlKindPopup, "VelQuickColor", nullptr, nullptr, kNoKey},
                                   kEndRow};
    PDEControlItem *table = createControlTable(rows, std::size(rows), ppd), *tables[] = {nullptr, table};
    PDEControlItem* compound = [PDECommon commonControlTableCompound:tables count:2];
    EXPECT_STREQ(compound[2].ppdKey, "VelQuickColor");
    EXPECT_EQ(compound[3].kind, PDEControlKindEnd);
    [PDECommon commonBuildPDEItem:table ppdfile:ppd];
    for (int value : {3, 4})
        [PDECommon commonSetControlValueWithSInt32:&table[0] value:value];
    EXPECT_EQ([popup indexOfSelectedItem], 3) << "there is no fifth item";
    NSMutableArray* keys = [NSMutableArray array];
    for (PDEControlItem* one : {table, compound, (PDEControlItem*)nullptr}) {
        [PDECommon commonAddPPDArray:keys table:one];
        vColorPresetConstraints(one);
    }
    EXPECT_TRUE(([keys isEqual:@[ @"VelEdgeType", @"VelEdgeType" ]]));
    free(compound);
    freeControlTable(table);
}

TEST_F(PpdAccess, ReadsNumbersFromASessionAndKnowsNoQueueWithoutAPrinter)
{
    PMSessionObject* session = [[[PMSessionObject alloc] initWithPrinter:nil] autorelease];
    PMSettingsObject* settings = [[[PMSettingsObject alloc] init] autorelease];
    EXPECT_EQ([PDECommon commonGetModelDictionary:[settings handle] session:[session handle]], nil);
    SInt32 handle = 9;
    NSNumber* number = [NSNumber numberWithInt:424242];
    for (id data in @[ number, @"text", @5000000000ll, @-1.5 ]) {
        [session setData:data forKey:@"key"];
        NSUInteger references = [data retainCount];
        EXPECT_EQ([PDECommon commonGetTicket:[session handle] kind:@"key" ticket:&handle],
                  data == number ? 0 : -30889);
        EXPECT_EQ(handle, data == number ? 424242 : 0);
        EXPECT_EQ([data retainCount], references) << "what a Get call returns stays the session's";
    }
    EXPECT_NE([PDECommon commonGetTicket:[session handle] kind:@"other" ticket:&handle], 0);
}
