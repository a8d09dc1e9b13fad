#include "common/PDECommon+Summary.h"
#include "common/PDECommon+Ticket.h"
#include "common/TableFixture.h"

class Ticket : public TableFixture {
protected:
    void SetUp() override
    {
        openPpd(samplePpd());
        build({row(PDEControlKindPopup, "VelQuickColor", "Quick Color"),
               row(PDEControlKindPopup, "VelBrightness", "Brightness"),
               row(PDEControlKindCheckBox, "VelEconoMode", "EconoMode"),
               row(PDEControlKindPopup, "VelEdgeType", "EdgeType")});
    }

    void save(const std::vector<int>& values)
    {
        for (size_t i = 0; i < values.size(); ++i)
            [PDECommon commonSetControlValueWithSInt32:&table[i] value:values[i]];
        EXPECT_EQ([PDECommon commonSyncTicketFromPane:[settings handle] session:[session handle] table:table],
                  0);
    }

    std::vector<int> restored()
    {
        [PDECommon commonSyncPaneFromTicket:[settings handle] session:[session handle] table:table];
        std::vector<int> result;
        for (SInt16 i = 0; hasRow(table, i); ++i)
            result.push_back([PDECommon commonGetControlValueWithSInt32:&table[i]]);
        return result;
    }
};

TEST_F(Ticket, KeepsChoicesUnderModelAndQueueAndAtTheTop)
{
    [settings replaceValues:@{@"Copies" : @3, @"R4270" : @{@"Other" : @{@"VelBrightness" : @"Darker"}}}];
    save({1, 0, 0, 1});
    save({1, 4, 1, 3});
    NSDictionary* choices = @{
        @"VelQuickColor" : @"Photo",
        @"VelBrightness" : @"Darkest",
        @"VelEconoMode" : @"True",
        @"VelEdgeType" : @"Strong"
    };
    NSMutableDictionary* expected = [NSMutableDictionary dictionaryWithDictionary:choices];
    [expected setObject:@3 forKey:@"Copies"];
    [expected setObject:@{@"Other" : @{@"VelBrightness" : @"Darker"}, @"Queue" : choices} forKey:@"R4270"];
    EXPECT_TRUE([[settings values] isEqual:expected]) << [[[settings values] description] UTF8String];
    EXPECT_EQ(restored(), (std::vector<int>{1, 4, 1, 3}));
}

TEST_F(Ticket, RestoresWhatThePpdKnowsAndElseTheValueBefore)
{
    struct Case {
        NSDictionary* stored;
        std::vector<int> restored;
    };
    NSDictionary* elsewhere = @{@"VelBrightness" : @"Darker"};
    for (const Case& c : {
             // From 1, 1, 1, 1. An absent key gives the default, what is no choice leaves the control.
             Case{@{}, {0, 2, 0, 2}},
             Case{@{@"VelQuickColor" : @"photo", @"VelBrightness" : @"Darker"}, {1, 3, 0, 2}},
             Case{@{@"VelEconoMode" : @"TRUE"}, {0, 2, 1, 2}},
             Case{@{@"VelEconoMode" : @"true"}, {0, 2, 1, 2}},
             Case{@{@"VelEconoMode" : @"tRUE"}, {0, 2, 0, 2}},
             Case{@{@"VelEconoMode" : @"1"}, {0, 2, 0, 2}},
             // What is no text takes over the value of the row before; the first has none before it.
             Case{@{@"VelQuickColor" : @"LineArt", @"VelBrightness" : @7}, {2, 2, 0, 2}},
             Case{@{@"VelQuickColor" : @[], @"VelBrightness" : @"No", @"VelEconoMode" : @{}}, {1, 1, 1, 2}},
             // An entry of the model's own name would take the place of all queues' choices.
             Case{@{@"R4270" : @{@"Q" : @"x"}, @"VelQuickColor" : @"Photo"}, {1, 2, 0, 2}},
         }) {
        save({1, 1, 1, 1});
        [settings replaceValues:@{@"R4270" : @{@"Queue" : c.stored, @"Other" : elsewhere}}];
        EXPECT_EQ(restored(), c.restored) << [[c.stored description] UTF8String];
        EXPECT_TRUE([[[[settings values] objectForKey:@"R4270"] objectForKey:@"Other"] isEqual:elsewhere]);
    }
}

TEST_F(Ticket, DoesNothingWithoutAQueueOrWhereNoDictionaryStands)
{
    for (NSDictionary* stored in
         @[ @{@"R4270" : @5},
            @{@"R4270" : @[]},
            @{@"R4270" : @{@"Queue" : @"text"}} ]) {
        [settings replaceValues:stored];
        save({1, 1, 1, 1});
        EXPECT_EQ(restored(), (std::vector<int>{1, 1, 1, 1}));
        EXPECT_TRUE([[settings values] isEqual:stored]) << [[[settings values] description] UTF8String];
    }
    [settings replaceValues:@{}];
    session = own([[PMSessionObject alloc] initWithPrinter:nil]);
    save({1, 1, 1, 1});
    EXPECT_EQ([[settings values] objectForKey:@"VelEdgeType"], nil);
}

TEST_F(Ticket, ReadsSessionDataThatIsANumber)
{
    SInt32 handle = 9;
    NSNumber* number = own([[NSNumber alloc] initWithInt:424242]);
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

TEST_F(Ticket, SummarisesRowsThatHaveAValueAndSavesNoneThatHasNone)
{
    save({3, -1, 1, 1});
    EXPECT_EQ([[settings values] objectForKey:@"VelBrightness"], nil);
    NSMutableDictionary* dict = [NSMutableDictionary dictionary];
    NSMutableArray* order = [NSMutableArray array];
    EXPECT_EQ([PDECommon commonGetSummaryText:table adddict:dict addArray:order], -50);
    EXPECT_TRUE(([order isEqual:@[ @"Quick Color", @"EconoMode", @"EdgeType" ]]));
    EXPECT_TRUE(([dict isEqual:@{@"Quick Color" : @"Custom", @"EconoMode" : @"On", @"EdgeType" : @"Light"}]));
}
