#include "HostedPanel.h"

#include "common/PDECommon+ControlTable.h"
#include "panels/ControlTableView.h"
#include "plugin/PDEPlugInInterface.h"
#include "profiles/PDECommon+Profiles.h"
#include "profiles/ProfileListFile.h"
#include "profiles/ProfileName.h"
#include "support/DriverRoot.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <fstream>
#include <regex>
#include <thread>

// The panel as a print dialog uses it, next to what the toolkit takes for the same. Needs a display.

namespace {

/// The sample printer's PPD with so many more choices for each menu of the driver.
std::string ppdWithMoreChoices(int count)
{
    std::string more;
    for (int i = 0; i < count; ++i)
        more += "*$1 Choice" + std::to_string(i) + "/Choice " + std::to_string(i) + ": \"\"\n";
    static const std::regex menu(R"(\*CloseUI: \*(Vel(?!ColorAsGray|EconoMode)\w+))");
    return std::regex_replace(readFile(PDE_SOURCE_DIR "/printer/R4270.ppd"), menu, more + "$&");
}

class Bench {
public:
    /// `profiles` in each list, and so many more choices in each menu.
    explicit Bench(int profiles, int moreChoices = 0)
        : ppd_(files_.write("printer.ppd", ppdWithMoreChoices(moreChoices)))
    {
        auto list = std::make_unique<ProfileList>();
        for (list->iNum = 0; list->iNum < profiles; ++list->iNum) {
            ProfileRecord& record = list->records[list->iNum];
            record = {list->iNum + 1, kFoundListed, 2, {}, {}, kOnDisk, 3};
            setNameText(record.FileName, "PROFILE" + std::to_string(list->iNum) + ".ICC");
            setNameText(record.ProfileName, "Office Proof Coated " + std::to_string(list->iNum));
        }
        std::ofstream(currentListPath()) << listFileText(*list, *list, *list);
        ageListFile();
        [window_ orderFront:nil];
        close();
        open();
    }

    ~Bench()
    {
        [window_ release];
        hosted_.reset();
        [pool_ drain];
    }

    /// What a dialog does up to the first picture of the panel.
    void open()
    {
        NSView* view = [panel() panelView];
        [panel() willShow];
        [panel() restoreValuesAndReturnError:nullptr];
        draw(view);
    }

    void close()
    {
        [window_ setContentView:[[[NSView alloc] init] autorelease]];
        hosted_ = std::make_unique<HostedPanel>(ppd_);
    }

    void draw(NSView* view)
    {
        [window_ setContentView:view];
        [window_ display];
        [[window_ graphicsContext] flushGraphics];
    }

    id<PDEPanelProtocol> panel() { return hosted_->panel(); }

    PDEControlItem* table() { return [(ControlTableView*)hosted_->part(@"onAdvancedView") getControlData]; }

    std::vector<NSPopUpButton*> profileMenus()
    {
        std::vector<NSPopUpButton*> menus;
        for (const PDEControlItem* row = table(); row->kind != PDEControlKindEnd; ++row) {
            if (row->profileClass != kNoProfiles)
                menus.push_back(row->control);
        }
        return menus;
    }

    /// A file that changed within the last tick of its clock would be parsed more than once.
    static void ageListFile() { std::this_thread::sleep_for(std::chrono::milliseconds(12)); }

    static void changeListFile()
    {
        std::filesystem::last_write_time(currentListPath(), std::filesystem::file_time_type::clock::now());
        ageListFile();
    }

private:
    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    DriverRoot root_;
    Sandbox files_;
    std::filesystem::path ppd_;
    std::unique_ptr<HostedPanel> hosted_;
    NSWindow* window_ = [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, 600, 500)
                                                    styleMask:NSTitledWindowMask
                                                      backing:NSBackingStoreBuffered
                                                        defer:NO];
};

/// The interface file with the toolkit's own class in the place of each of the plug-in's, and with outlets
/// that every object has.
std::string plainInterface()
{
    static const std::regex outlet(R"((<outlet property=")(?!pdeMainView|shown)\w+)");
    static const std::regex firstView("onColorView"); // the first is the owner's
    static const std::regex ours(R"((customClass=")(\w+_5C1E\w+))");
    std::string file = readFile(PDE_SOURCE_DIR "/PDE_COL/Resources/PDEMain.xib");
    file = std::regex_replace(file, firstView, "shown", std::regex_constants::format_first_only);
    file = std::regex_replace(file, outlet, "$1unused");
    for (std::smatch match; std::regex_search(file, match, ours);) {
        Class used = NSClassFromString([NSString stringWithUTF8String:match.str(2).c_str()]);
        while ([NSStringFromClass(used) rangeOfString:@"_5C1E"].location != NSNotFound)
            used = [used superclass];
        file =
            match.prefix().str() + match.str(1) + [NSStringFromClass(used) UTF8String] + match.suffix().str();
    }
    return file;
}

} // namespace

@interface NSObject (UnusedOutlet)
- (void)setUnused:(id)object;
@end

@implementation NSObject (UnusedOutlet)
- (void)setUnused:(id)object
{
}
@end

/// Takes the outlets of the interface file that are used.
@interface PlainOwner : NSObject
{
@public
    NSView* pdeMainView;
    NSView* shown;
}
@end

@implementation PlainOwner
@end

namespace {

void openPanel(benchmark::State& state)
{
    Bench bench(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    for (auto _ : state) {
        @autoreleasepool {
            state.PauseTiming();
            bench.close();
            state.ResumeTiming();
            bench.open();
        }
    }
}
BENCHMARK(openPanel)->Args({0, 0})->Args({50, 0})->Args({500, 0})->Args({0, 300})->Unit(
    benchmark::kMillisecond);

/// The same interface file with plain views, drawn: the toolkit's share.
void openPlainInterface(benchmark::State& state)
{
    Bench bench(0);
    Sandbox sandbox;
    NSString* path = [NSString stringWithUTF8String:sandbox.write("Plain.xib", plainInterface()).c_str()];
    for (auto _ : state) {
        @autoreleasepool {
            NSNib* nib = [[[NSNib alloc] initWithContentsOfURL:[NSURL fileURLWithPath:path]] autorelease];
            PlainOwner* owner = [[[PlainOwner alloc] init] autorelease];
            [nib instantiateWithOwner:owner topLevelObjects:nullptr];
            if (owner->shown == nil)
                state.SkipWithError("the interface file has no view");
            [owner->pdeMainView addSubview:owner->shown];
            bench.draw(owner->pdeMainView);
        }
    }
}
BENCHMARK(openPlainInterface)->Unit(benchmark::kMillisecond);

void fillSevenPopUps(benchmark::State& state)
{
    Bench bench(static_cast<int>(state.range(0)));
    Class common = NSClassFromString(@"PDECommon_5C1E9A20_6B4D_4F3A_9E21_3D7B8C0F4A16");
    for (auto _ : state) {
        @autoreleasepool {
            state.PauseTiming();
            for (NSPopUpButton* popup : bench.profileMenus())
                [popup removeAllItems];
            state.ResumeTiming();
            (void)[common commonAddMenuFromProfilePlist:bench.table()];
        }
    }
}
BENCHMARK(fillSevenPopUps)->Arg(0)->Arg(50)->Arg(500)->Unit(benchmark::kMillisecond);

/// The same titles, added one by one as the toolkit offers it.
void fillSevenPopUpsOneByOne(benchmark::State& state)
{
    Bench bench(500);
    std::vector<NSArray*> titles;
    for (NSPopUpButton* popup : bench.profileMenus())
        titles.push_back([popup itemTitles]);
    for (auto _ : state) {
        @autoreleasepool {
            for (size_t i = 0; i < titles.size(); ++i) {
                NSPopUpButton* popup = bench.profileMenus()[i];
                [popup removeAllItems];
                for (NSString* title in titles[i])
                    [popup addItemWithTitle:title];
            }
        }
    }
}
BENCHMARK(fillSevenPopUpsOneByOne)->Unit(benchmark::kMillisecond)->Iterations(1);

/// One call of the panel whose seven profile menus hold the last profile of their list.
template <typename Call>
void callPanel(benchmark::State& state, Call call, bool listFileChanges = false)
{
    Bench bench(static_cast<int>(state.range(0)));
    for (NSPopUpButton* popup : bench.profileMenus())
        [popup selectItemAtIndex:[popup numberOfItems] - 1];
    [bench.panel() saveValuesAndReturnError:nullptr];
    for (auto _ : state) {
        @autoreleasepool {
            if (listFileChanges) {
                state.PauseTiming();
                Bench::changeListFile();
                state.ResumeTiming();
            }
            call(bench.panel());
        }
    }
    for (NSPopUpButton* popup : bench.profileMenus()) {
        if ([popup indexOfSelectedItem] != [popup numberOfItems] - 1)
            state.SkipWithError("a profile was not restored");
    }
}

void restore(id<PDEPanelProtocol> panel)
{
    [panel restoreValuesAndReturnError:nullptr];
}

void everySize(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Unit(benchmark::kMillisecond)->Arg(0)->Arg(50)->Arg(500);
}
BENCHMARK_CAPTURE(callPanel, restore, restore)->Apply(everySize);
BENCHMARK_CAPTURE(callPanel, restoreWithANewFile, restore, true)->Apply(everySize);
BENCHMARK_CAPTURE(callPanel, save, [](id<PDEPanelProtocol> panel) {
    [panel saveValuesAndReturnError:nullptr];
})->Apply(everySize);
BENCHMARK_CAPTURE(callPanel, summary, [](id<PDEPanelProtocol> panel) {
    (void)[panel summaryInfo];
})->Apply(everySize);
BENCHMARK_CAPTURE(callPanel, rules, [](id<PDEPanelProtocol> panel) { [(id)panel constraints:nil]; })
    ->Arg(500)
    ->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    [NSApplication sharedApplication];
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    [pool drain];
    return 0;
}
