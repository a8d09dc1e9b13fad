#include "HostedPanel.h"
#include "profilewindow/ProfileControl.h"

#include "profiles/ProfileListFile.h"
#include "profiles/ProfileName.h"
#include "support/DriverRoot.h"

#include <benchmark/benchmark.h>
#include <fstream>
#include <memory>

// The profile management window with full lists, next to the same window with nearly empty ones and to a
// table of the toolkit that shows constant texts. Needs a display.

/// As many rows as full lists have, and nothing to look up for them.
@interface WindowBenchSource : NSObject <NSTableViewDataSource>
@end

@implementation WindowBenchSource
- (NSInteger)numberOfRowsInTableView:(NSTableView*)tableView
{
    return kProfileSlots;
}
- (id)tableView:(NSTableView*)tableView
    objectValueForTableColumn:(NSTableColumn*)tableColumn
                          row:(NSInteger)row
{
    return [[tableColumn identifier] isEqualToString:@"inmenu"] ? @1 : @"Office Proof Coated";
}
@end

namespace {

/// The window, with `count` profiles in each list.
class Bench {
public:
    explicit Bench(int count)
    {
        auto list = std::make_unique<ProfileList>();
        for (list->iNum = 0; list->iNum < count; ++list->iNum) {
            ProfileRecord& record = list->records[list->iNum];
            record.IndexOnDevice = list->iNum + 1;
            record.InMenu = list->iNum % kByHandListed + 1;
            record.Location = kOnDisk;
            setNameText(record.FileName, "PROFILE" + std::to_string(list->iNum) + ".ICC");
            setNameText(record.ProfileName, "Office Proof Coated " + std::to_string(list->iNum));
        }
        std::ofstream(currentListPath()) << listFileText(*list, *list, *list);
        (void)[hosted_.panel() panelView];
        prepare();
        table_ = [hosted_.part(@"profileControl") valueForKey:@"_profileTableView"];
    }
    ~Bench() { [pool_ drain]; }

    void prepare() { [hosted_.part(@"profileControl") initWithProfileControl]; }
    void draw()
    {
        [[table_ window] display];
        [[[table_ window] graphicsContext] flushGraphics];
    }
    NSTableView* table() { return table_; }
    NSWindow* window() { return [table_ window]; }

private:
    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    DriverRoot root_;
    HostedPanel hosted_;
    NSTableView* table_ = nil;
};

/// Reading the lists, filling the table, and the first picture of it.
void openWindow(benchmark::State& state)
{
    Bench bench(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        @autoreleasepool {
            bench.prepare();
            [bench.window() makeKeyAndOrderFront:nil];
            bench.draw();
            [bench.window() orderOut:nil];
        }
    }
}
BENCHMARK(openWindow)->Arg(0)->Arg(5)->Arg(kProfileSlots)->Unit(benchmark::kMillisecond);

/// One page of the table further, drawn.
void scroll(benchmark::State& state, NSTableView* table)
{
    constexpr NSInteger kPage = 12;
    [[table window] makeKeyAndOrderFront:nil];
    NSInteger row = 0;
    for (auto _ : state) {
        @autoreleasepool {
            row = (row + kPage) % kProfileSlots;
            [table scrollRowToVisible:row];
            [[table window] displayIfNeeded];
            [[[table window] graphicsContext] flushGraphics];
        }
    }
    [[table window] orderOut:nil];
}

void scrollAPage(benchmark::State& state)
{
    Bench bench(kProfileSlots);
    scroll(state, bench.table());
}
BENCHMARK(scrollAPage)->Unit(benchmark::kMillisecond);

void scrollAPageOfConstants(benchmark::State& state)
{
    Bench bench(kProfileSlots);
    WindowBenchSource* source = [[WindowBenchSource alloc] init];
    [bench.table() setDelegate:nil];
    [bench.table() setDataSource:source];
    scroll(state, bench.table());
    [bench.table() setDataSource:nil];
    [source release];
}
BENCHMARK(scrollAPageOfConstants)->Unit(benchmark::kMillisecond);

} // namespace
