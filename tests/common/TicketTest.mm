#include "common/PDECommon+Summary.h"
#include "common/PDECommon+Ticket.h"
#include "common/TableFixture.h"

class Ticket : public TableFixture {
protected:
    void SetUp() override
    {
        openPpd(samplePpd());
        build({{makePopup(), PDEControlKindPopup, "VelQuickColor", nullptr, "Quick Color", kNoKey},
               {makePopup(), PDEControlKindPopup, "VelBrightness", nullptr, "Brightness", kNoKey},
               {makeCheckBox(), PDEControlKindCheckBox, "VelEconoMode", "EconoMode", "EconoMode", kNoKey},
               {makePopup(), PDEControlKindPopup, "VelEdgeType", nullptr, "EdgeType", kNoKey}});
        select({0, 0, 0, 0});
    }

    void select(const std::vector<int>& values)
    {
        for (size_t i = 0; i < values.size(); ++i)
            [PDECommon commonSetControlValueWithSInt32:&table[i] value:values[i]];
    }

    std::vector<int> values()
    {
        std::vector<int> result;
        for (SInt16 i = 0; hasRow(table, i); ++i)
            result.push_back([PDECommon commonGetControlValueWithSInt32:&table[i]]);
        return result;
    }

    int save()
    {
        return [PDECommon commonSyncTicketFromPane:[settings handle] session:[session handle] table:table];
    }

    std::vector<int> restoredFrom(NSDictionary* stored)
    {
        [settings replaceValues:stored];
        EXPECT_EQ([PDECommon commonSyncPaneFromTicket:[settings handle] session:[session handle] table:table],
                  0);
        return values();
    }

    std::vector<int> restoredFromQueue(NSDictionary* choices)
    {
        return restoredFrom(@{@"R4270" : @{@"Queue" : choices}});
    }
};

TEST_F(Ticket, KeepsChoicesUnderModelAndQueueAndAtTheTop)
{
    [settings replaceValues:@{@"Copies" : @3, @"R4270" : @{@"Other" : @{@"VelBrightness" : @"Darker"}}}];
    select({1, 4, 1, 3});
    EXPECT_EQ(save(), 0);
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
}

TEST_F(Ticket, RestoresWhatItSavedForThisQueueOnly)
{
    select({2, 3, 1, 0});
    save();
    NSDictionary* stored = [[[settings values] copy] autorelease];
    select({0, 0, 0, 3});
    EXPECT_EQ(restoredFrom(stored), (std::vector<int>{2, 3, 1, 0}));
    NSDictionary* elsewhere =
        @{@"R4270" : @{@"Other" : [[stored objectForKey:@"R4270"] objectForKey:@"Queue"]}};
    EXPECT_EQ(restoredFrom(elsewhere), (std::vector<int>{0, 2, 0, 2}));
}

TEST_F(Ticket, ChecksEveryStoredValueAgainstThePpd)
{
    select({1, 1, 1, 1});
    // Not a choice: stays. Boxes know three spellings of true; whatever else is text clears them.
    EXPECT_EQ(restoredFromQueue(@{@"VelQuickColor" : @"photo", @"VelBrightness" : @"Darker"}),
              (std::vector<int>{1, 3, 0, 2}));
    for (NSString* word in @[ @"True", @"TRUE", @"true" ])
        EXPECT_EQ(restoredFromQueue(@{@"VelEconoMode" : word})[2], 1);
    for (NSString* word in @[ @"tRUE", @"1", @"", @"False" ])
        EXPECT_EQ(restoredFromQueue(@{@"VelEconoMode" : word})[2], 0);
}

TEST_F(Ticket, CarriesTheValueOfTheRowBeforeOverAStoredValueThatIsNoText)
{
    EXPECT_EQ(restoredFromQueue(
                  @{@"VelQuickColor" : @"LineArt",
                    @"VelBrightness" : @7}),
              (std::vector<int>{2, 2, 0, 2}));
    // The first row has none before it, and a value that is no choice carries nothing on.
    select({1, 1, 0, 0});
    EXPECT_EQ(restoredFromQueue(@{
                  @"VelQuickColor" : @[],
                  @"VelBrightness" : @"No",
                  @"VelEconoMode" : @{},
                  @"VelEdgeType" : @"Strong"
              }),
              (std::vector<int>{1, 1, 0, 3}));
}

TEST_F(Ticket, DoesNothingWhereSomethingElseStandsInPlaceOfADictionary)
{
    for (NSDictionary* stored in @[
             @{@"R4270" : @5},
             @{@"R4270" : @[]},
             @{@"R4270" : @{@"Queue" : @"text"}},
             @{@"R4270" : @{@"Queue" : @[ @1 ], @"Other" : @{@"a" : @"b"}}}
         ]) {
        select({1, 1, 1, 1});
        EXPECT_EQ(restoredFrom(stored), (std::vector<int>{1, 1, 1, 1}));
        EXPECT_EQ(save(), 0);
        EXPECT_TRUE([[settings values] isEqual:stored]) << [[[settings values] description] UTF8String];
    }
}

TEST_F(Ticket, KeepsAllQueuesWhenAnEntryHasTheModelsName)
{
    for (id odd in @[ @"text", @{@"Q" : @"x"}, @5 ]) {
        NSDictionary* other = @{@"VelBrightness" : @"Darker"};
        EXPECT_EQ(
            restoredFrom(
                @{@"R4270" : @{@"Queue" : @{@"R4270" : odd, @"VelQuickColor" : @"Photo"}, @"Other" : other}
                })[0],
            1);
        EXPECT_EQ(save(), 0);
        EXPECT_TRUE([[[[settings values] objectForKey:@"R4270"] objectForKey:@"Other"] isEqual:other]);
        EXPECT_TRUE([[[settings values] objectForKey:@"VelEdgeType"] isEqual:@"Medium"]);
    }
}

TEST_F(Ticket, WritesNothingForAPopupWithoutASelection)
{
    [table[1].control selectItemAtIndex:-1];
    save();
    EXPECT_EQ([[settings values] objectForKey:@"VelBrightness"], nil);
    EXPECT_NE([[settings values] objectForKey:@"VelEdgeType"], nil);
}

TEST_F(Ticket, NeedsAQueue)
{
    [session release];
    session = [[PMSessionObject alloc] initWithPrinter:nil];
    EXPECT_EQ(save(), 0);
    EXPECT_EQ([[settings values] objectForKey:@"VelEdgeType"], nil);
    EXPECT_EQ([PDECommon commonGetPrintQueueName:[session handle]], nil);
}

TEST_F(Ticket, ReadsSessionDataThatIsANumber)
{
    SInt32 handle = 9;
    EXPECT_NE([PDECommon commonGetTicket:[session handle] kind:@"key" ticket:&handle], 0);
    EXPECT_EQ(handle, 0);
    [session setData:@42 forKey:@"key"];
    EXPECT_EQ([PDECommon commonGetTicket:[session handle] kind:@"key" ticket:&handle], 0);
    EXPECT_EQ(handle, 42);
    for (id odd in @[ @"text", @5000000000ll, @-1.5 ]) {
        [session setData:odd forKey:@"key"];
        EXPECT_EQ([PDECommon commonGetTicket:[session handle] kind:@"key" ticket:&handle], -30889);
        EXPECT_EQ(handle, 0);
    }
}

TEST_F(Ticket, SummarisesRowsThatHaveAValue)
{
    select({3, 0, 1, 1});
    NSMutableDictionary* dict = [NSMutableDictionary dictionary];
    NSMutableArray* order = [NSMutableArray array];
    EXPECT_EQ([PDECommon commonGetSummaryText:table adddict:dict addArray:order], 0);
    EXPECT_TRUE(([order isEqual:@[ @"Quick Color", @"Brightness", @"EconoMode", @"EdgeType" ]]));
    EXPECT_TRUE(([dict isEqual:@{
        @"Quick Color" : @"Custom",
        @"Brightness" : @"Lightest",
        @"EconoMode" : @"On",
        @"EdgeType" : @"Light"
    }]));
    [table[1].control selectItemAtIndex:-1];
    [order removeAllObjects];
    EXPECT_EQ([PDECommon commonGetSummaryText:table adddict:dict addArray:order], -50);
    EXPECT_EQ([order count], 3u);
    EXPECT_EQ([PDECommon commonGetSummaryTextQuickColor:"X" itemName:nil adddict:dict addArray:order], -50);
}
