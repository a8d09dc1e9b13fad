#include "InterfaceOwner.h"
#include "panels/AdvancedColorOptions.h"

#include "common/ControlTable.h"
#include "common/PDECommon+ControlTable.h"
#include "profiles/DriverPaths.h"
#include "profiles/ListFixture.h"
#include "profiles/PDECommon+Profiles.h"

#include <PrintingObjects.h>
#include <benchmark/benchmark.h>
#include <chrono>
#include <thread>

// The advanced view with full profile lists: filling its seven profile pop-ups, and restoring seven profiles.
// Needs a display.

namespace {

/// The view on the sample printer, with `count` profiles in each list.
class Bench {
public:
    explicit Bench(int count) : root_("PDE_ROOT", sandbox_.path().string())
    {
        std::vector<ProfileRecord> records;
        for (int i = 0; i < count; ++i)
            records.push_back(record(kFoundListed, "PROFILE" + std::to_string(i) + ".ICC"));
        auto list = std::make_unique<ProfileList>(listOf(records));
        sandbox_.write(std::filesystem::path(currentListPath()).lexically_relative(sandbox_.path()),
                       listFileText(*list, *list, *list));

        view_ = [InterfaceOwner loadInterface]->onAdvancedView;
        printer_ = [[PMPrinterObject alloc] initWithIdentifier:@"Queue"
                                                     deviceURI:nil
                                                          file:@PDE_SOURCE_DIR "/printer/R4270.ppd"
                                                         error:nullptr];
        session_ = [[PMSessionObject alloc] initWithPrinter:printer_];
        settings_ = [[PMSettingsObject alloc] init];
        [view_ setPMPrint:[settings_ handle] session:[session_ handle]];
        [view_ setPPDFile:[printer_ ppdFile]];
        [view_ createPDEControlTable];
    }

    ~Bench()
    {
        [view_ deallocPDEControlTable];
        [settings_ release];
        [session_ release];
        [printer_ release];
        [pool_ drain];
    }

    AdvancedColorOptions* view() { return view_; }
    PDEControlItem* table() { return [view_ getControlData]; }
    void fillFromPpd() { [PDECommon commonBuildPDEItem:table() ppdfile:[printer_ ppdFile]]; }
    void addProfiles() { (void)[PDECommon commonAddMenuFromProfilePlist:table()]; }

    /// The rows that offer profiles.
    std::vector<const PDEControlItem*> profileRows()
    {
        std::vector<const PDEControlItem*> rows;
        for (SInt16 i = 0; hasRow(table(), i); ++i) {
            if (table()[i].profileClass != kNoProfiles)
                rows.push_back(&table()[i]);
        }
        return rows;
    }

    /// A file that changed within the last tick of its clock would be parsed more than once.
    void makeListFileNew(benchmark::State& state)
    {
        state.PauseTiming();
        std::filesystem::last_write_time(currentListPath(), std::filesystem::file_time_type::clock::now());
        std::this_thread::sleep_for(std::chrono::milliseconds(12));
        state.ResumeTiming();
    }

private:
    Sandbox sandbox_;
    ScopedVariable root_;
    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    AdvancedColorOptions* view_ = nil;
    PMPrinterObject* printer_ = nil;
    PMSessionObject* session_ = nil;
    PMSettingsObject* settings_ = nil;
};

void fillSevenPopUps(benchmark::State& state)
{
    Bench bench(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        @autoreleasepool {
            state.PauseTiming();
            bench.fillFromPpd();
            state.ResumeTiming();
            bench.addProfiles();
        }
    }
}
BENCHMARK(fillSevenPopUps)->Arg(0)->Arg(50)->Arg(kProfileSlots)->Unit(benchmark::kMillisecond);

/// The same titles, added one by one as the toolkit offers it.
void fillSevenPopUpsOneByOne(benchmark::State& state)
{
    Bench bench(static_cast<int>(state.range(0)));
    bench.fillFromPpd();
    bench.addProfiles();
    std::vector<NSArray*> titles;
    for (const PDEControlItem* row : bench.profileRows())
        titles.push_back([row->control itemTitles]);
    for (auto _ : state) {
        @autoreleasepool {
            for (size_t i = 0; i < titles.size(); ++i) {
                NSPopUpButton* popup = bench.profileRows()[i]->control;
                [popup removeAllItems];
                for (NSString* title in titles[i])
                    [popup addItemWithTitle:title];
            }
        }
    }
}
BENCHMARK(fillSevenPopUpsOneByOne)->Arg(50)->Arg(kProfileSlots)->Unit(benchmark::kMillisecond);

/// Restoring a view whose seven profile rows hold the last profile of their list.
void restore(benchmark::State& state, bool newFile)
{
    Bench bench(kProfileSlots);
    [bench.view() createPDEItemForPPDKey];
    for (const PDEControlItem* row : bench.profileRows())
        [row->control selectItemAtIndex:[row->control numberOfItems] - 1];
    [bench.view() setControlValueToTicket];
    for (auto _ : state) {
        @autoreleasepool {
            if (newFile)
                bench.makeListFileNew(state);
            [bench.view() getControlValueFromTicket];
        }
    }
    for (const PDEControlItem* row : bench.profileRows()) {
        if ([row->control indexOfSelectedItem] != [row->control numberOfItems] - 1)
            state.SkipWithError("a profile was not restored");
    }
}

void restoreWithANewFile(benchmark::State& state)
{
    restore(state, true);
}
BENCHMARK(restoreWithANewFile)->Unit(benchmark::kMillisecond);

void restoreWithAnUnchangedFile(benchmark::State& state)
{
    restore(state, false);
}
BENCHMARK(restoreWithAnUnchangedFile)->Unit(benchmark::kMillisecond);

/// One parse of the same file, to see how many of them a restore takes.
void parseANewFile(benchmark::State& state)
{
    Bench bench(kProfileSlots);
    for (auto _ : state) {
        bench.makeListFileNew(state);
        benchmark::DoNotOptimize(currentLists());
    }
}
BENCHMARK(parseANewFile)->Unit(benchmark::kMillisecond);

} // namespace
