// The dialog as a person uses it, in this process: its window, its lists and its alerts, on queues of a real
// server.
#include "dialog/Appearance.h"
#include "dialog/DialogController.h"
#include "script/ControlRows.h"
#include "script/Outlets.h"
#include "support/PrivateCups.h"

#import <GNUstepGUI/GSTheme.h>
#include <cstdlib>
#include <cups/cups.h>
#include <filesystem>
#include <gtest/gtest.h>

/// Answers modal windows as a user does: presses the button of the next title and keeps what was written.
@interface Answerer : NSObject
{
@public
    std::vector<std::string> buttons;
    std::string written;
    BOOL pressing; ///< a pressed button runs the run loop for a moment
    int rest;      ///< turns until the window that was answered is surely gone
    int unanswered;
}
@end

@implementation Answerer

- (BOOL)look:(NSView*)view
{
    if ([view isKindOfClass:[NSTextField class]])
        written += std::string([[(NSTextField*)view stringValue] UTF8String]) + "\n";
    if ([view isKindOfClass:[NSButton class]] &&
        [[(NSButton*)view title] isEqual:[NSString stringWithUTF8String:buttons.front().c_str()]]) {
        [(NSButton*)view performClick:nil];
        return YES;
    }
    BOOL pressed = NO;
    for (NSView* part in [[[view subviews] copy] autorelease])
        pressed = pressed || [self look:part];
    return pressed;
}

- (void)tick:(NSTimer*)timer
{
    NSWindow* modal = [NSApp modalWindow];
    if (pressing || ![modal isVisible])
        return;
    pressing = YES;
    if (--rest <= 0 && !buttons.empty() && [self look:[modal contentView]]) {
        buttons.erase(buttons.begin());
        rest = 5;
    } else if (++unanswered == 50) {
        [NSApp abortModal];
    }
    pressing = NO;
    NSEvent* event = [NSEvent otherEventWithType:NSApplicationDefined
                                        location:NSZeroPoint
                                   modifierFlags:0
                                       timestamp:0
                                    windowNumber:0
                                         context:nil
                                         subtype:0
                                           data1:0
                                           data2:0];
    [NSApp postEvent:event atStart:NO];
}

@end

namespace {

constexpr char kPpd[] = PDE_SOURCE_DIR "/printer/R4270.ppd";

void turn(NSTimeInterval seconds)
{
    [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:seconds]];
}

class DialogActions : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!PrivateCups::installed())
            GTEST_SKIP() << "no CUPS server with its filters is installed";
        cupsSetServer(getenv("CUPS_SERVER")); // the library reads it once
        for (const char* queue : {"Hall", "Office"})
            ASSERT_TRUE(cups_.addQueue(queue, kPpd)) << cups_.problem();
        user_ = [[Answerer alloc] init];
        timer_ = [NSTimer timerWithTimeInterval:0.1
                                         target:user_
                                       selector:@selector(tick:)
                                       userInfo:nil
                                        repeats:YES];
        [[NSRunLoop currentRunLoop] addTimer:timer_ forMode:NSModalPanelRunLoopMode];
        std::string pages = home_.write("five.ps", "%!\nshowpage showpage showpage showpage showpage\n");
        file_ = home_ / "five.pdf";
        ASSERT_EQ(runProcess({"ps2pdf", pages, file_}).status, 0);
        open("Office");
    }

    void TearDown() override
    {
        close();
        [timer_ invalidate];
        [user_ release];
    }

    void open(const std::string& queue)
    {
        NSString* reason = nil;
        dialog_ = [[DialogController alloc] initWithOptions:{
            .plugin = PDE_BUILD_DIR "/R4270.plugin", .printer = queue, .files = { file_ }
        }
                                                      error:&reason];
        ASSERT_TRUE(dialog_ != nil) << [reason UTF8String];
        [dialog_ showPanel];
        awaitPanel();
    }

    void awaitPanel()
    {
        for (int i = 0; i < 100 && (i < 3 || [dialog_ panel] == nil); ++i)
            turn(0.1);
    }

    void close()
    {
        [dialog_ terminatePanel];
        [[[dialog_ window] window] orderOut:nil];
        [dialog_ release];
        dialog_ = nil;
    }

    /// What a user writes and says while `act` runs; what the windows said to him.
    template <typename Act>
    std::string answering(std::vector<std::string> buttons, Act act)
    {
        user_->buttons = buttons;
        user_->written.clear();
        user_->unanswered = 0;
        act();
        turn(0.3);
        EXPECT_TRUE(user_->buttons.empty()) << user_->buttons.front() << " was not there; " << user_->written;
        user_->buttons.clear();
        return user_->written;
    }

    std::string print(std::vector<std::string> buttons)
    {
        return answering(buttons, [this] { [dialog_ print:nil]; });
    }

    std::string chooseItem(NSPopUpButton* popUp, NSString* beginning, std::vector<std::string> buttons = {})
    {
        return answering(buttons, [&] {
            for (NSMenuItem* item in [popUp itemArray])
                if ([[item title] hasPrefix:beginning])
                    [popUp selectItem:item];
            EXPECT_TRUE([[popUp titleOfSelectedItem] hasPrefix:beginning]) << [beginning UTF8String];
            [popUp sendAction:[popUp action] to:[popUp target]];
            turn(0.7);
        });
    }

    std::string preset(NSString* title, std::vector<std::string> buttons = {})
    {
        return chooseItem([[dialog_ window] presets], title, buttons);
    }

    void goTo(NSString* printer)
    {
        chooseItem([[dialog_ window] printers], printer);
        awaitPanel();
    }

    void set(const char* field, int index)
    {
        id control = controlRow([dialog_ panel], field)->item->control;
        EXPECT_EQ([control isKindOfClass:[NSPopUpButton class]] ? ::chooseItem(control, index)
                                                                : setCheckBox(control, index),
                  "");
        turn(0.5);
    }

    long value(const char* field)
    {
        return [(NSPopUpButton*)controlRow([dialog_ panel], field)->item->control indexOfSelectedItem];
    }

    /// In the pop-ups of the page that have such choices.
    void choosePaper(const std::vector<NSString*>& choices)
    {
        [dialog_ showPage:kPaperPage];
        for (NSString* choice : choices)
            for (NSPopUpButton* popUp in [[[dialog_ paperPage] documentView] subviews])
                if ([popUp isKindOfClass:[NSPopUpButton class]] &&
                    [popUp indexOfItemWithRepresentedObject:choice] >= 0)
                    ::chooseItem(popUp, (int)[popUp indexOfItemWithRepresentedObject:choice]);
    }

    std::string option(const char* name) { return [dialog_ jobOptions][name]; }

    Sandbox home_;
    ScopedVariable folder_{"XDG_CONFIG_HOME", home_.path().string()};
    ScopedVariable root_{"PDE_ROOT", home_.path().string()};
    PrivateCups cups_;
    Answerer* user_ = nil;
    NSTimer* timer_ = nil;
    std::string file_;
    DialogController* dialog_ = nil;
};

} // namespace

TEST_F(DialogActions, TakesWholeCopiesAndAscendingPages)
{
    const char *noCopies = "no number of copies", *noPages = "no pages";
    struct {
        NSString *copies, *pages;
        const char* refusal;
    } const cases[] = {
        {@"3x", @"", noCopies},  {@"0", @"", noCopies},   {@"10000", @"", noCopies},
        {@"1", @"0-2", noPages}, {@"1", @"3-1", noPages}, {@"1", @"1-2-3", noPages},
        {@"1", @"a", noPages},
    };
    for (const auto& c : cases) {
        [[dialog_ window] setCopies:1 pageRanges:c.pages];
        [(NSTextField*)outletNamed([dialog_ window], "copies_") setStringValue:c.copies];
        EXPECT_NE(print({"OK"}).find(c.refusal), std::string::npos) << [c.copies UTF8String];
        NSText* editor = [[[dialog_ window] window] fieldEditor:NO forObject:nil];
        EXPECT_TRUE([[editor string] isEqual:c.refusal == noCopies ? c.copies : c.pages]);
        EXPECT_EQ([editor selectedRange].length, [[editor string] length]) << "it is to be typed over";
    }
    [[dialog_ window] setCopies:2 pageRanges:@"1-3, 5"];
    print({"Close"});
    auto job = cups_.receivedJob(1);
    ASSERT_TRUE(job) << cups_.log();
    EXPECT_NE((" " + job->options + " ").find(" page-ranges=1-3,5 "), std::string::npos) << job->options;
    EXPECT_NE(job->data.find("numcopies(2)"), std::string::npos);
}

TEST_F(DialogActions, KeepsTheChoicesOfEachPrinterAndPresetsForAllOfTheModel)
{
    set("menu_QuickColor", 1);
    choosePaper({@"DuplexNoTumble", @"2"});
    EXPECT_NE(preset(@"Save", {"Save"}).find("My Preset"), std::string::npos);
    goTo(@"Hall");
    EXPECT_EQ(value("menu_QuickColor"), 0);
    EXPECT_EQ(option("Duplex"), "") << "that is the other printer's";
    preset(@"My Preset");
    EXPECT_EQ(value("menu_QuickColor"), 1);
    EXPECT_EQ(option("Duplex") + option("number-up"), "DuplexNoTumble2");
    preset(@"Default");
    EXPECT_EQ(value("menu_QuickColor"), 0);
    EXPECT_EQ(option("Duplex"), "");
    set("menu_Brightness", 4);
    EXPECT_NE(preset(@"Save", {"Save", "Cancel"}).find("already"), std::string::npos);
    goTo(@"Office");
    EXPECT_EQ(value("menu_QuickColor"), 1) << "choices of one printer survive those of another";
    EXPECT_EQ(option("Duplex"), "DuplexNoTumble");
    preset(@"My Preset");
    EXPECT_EQ(value("menu_Brightness"), 2) << "it was not replaced";
    preset(@"Delete", {"Cancel"});
    preset(@"My Preset");
    preset(@"Delete", {"Delete"});
    EXPECT_EQ([[[dialog_ window] presets] indexOfItemWithTitle:@"My Preset"], -1);
    EXPECT_EQ(value("menu_QuickColor"), 0);
    goTo(@"Hall");
    EXPECT_EQ(value("menu_Brightness"), 4) << "chosen just before the printer was left";
    Presets* presets = [[[Presets alloc] initWithFolder:@"presets"] autorelease];
    for (NSString* name in @[ @"", @"..", @"../x", @"a/b", @".hidden", @"QUORVEX R4270/x" ])
        EXPECT_FALSE([presets save:@{} name:name]) << [name UTF8String] << ": elsewhere, or unseen";
}

TEST_F(DialogActions, RemembersWhatAPrinterWasLastUsedWith)
{
    set("menu_QuickColor", 2);
    choosePaper({@"Thick", @"reverse"});
    NSMutableDictionary* summary = [NSMutableDictionary dictionary];
    [[dialog_ paperPage] addToSummary:summary];
    EXPECT_TRUE([[summary objectForKey:@"Media Type"] isEqual:@"Thick Paper"]);
    EXPECT_EQ([[summary objectForKey:@"Summary Display Order"] count], 7u) << "none of the panel's own";
    print({"Close"});
    for (std::string queue : {"Office", "Hall"}) {
        bool same = queue == "Office";
        close();
        open(queue);
        EXPECT_EQ(value("menu_QuickColor"), same ? 2 : 0);
        EXPECT_EQ(option("MediaType") + option("outputorder"), same ? "Thickreverse" : "");
    }
}

TEST_F(DialogActions, PrintsOnThePrinterThatIsShownOrNotAtAll)
{
    auto shown = [this] {
        return std::string([[[[dialog_ window] printers] titleOfSelectedItem] UTF8String]);
    };
    cups_.stop();
    EXPECT_NE(print({"OK"}).find("Office: the printing system does not answer"), std::string::npos);
    EXPECT_EQ(shown(), "Office – the printing system does not answer");
    ASSERT_TRUE(cups_.start()) << cups_.problem();
    ASSERT_TRUE(cups_.administer({"/usr/sbin/cupsreject", "Office"})) << cups_.problem();
    EXPECT_NE(print({"OK"}).find("not accepting jobs"), std::string::npos);
    turn(0.5);
    EXPECT_NE([dialog_ panel], nil) << "the user can go on";
    ASSERT_TRUE(cups_.administer({"/usr/sbin/lpadmin", "-x", "Office"})) << cups_.problem();
    EXPECT_NE(print({"OK"}).find("no longer on the server"), std::string::npos);
    EXPECT_EQ(shown(), "Office – no longer on the server");
    goTo(@"Hall");
    print({"Close"});
    EXPECT_TRUE(cups_.receivedJob(1)) << "the first job of all; " << cups_.log();
}

TEST_F(DialogActions, NamesChoicesThatDoNotGoTogetherAndAsks)
{
    const std::string edges = "EconoMode: On does not go with Edge Type: Strong";
    set("check_EconomyPrint", 1);
    set("menu_EdgeStrength", 3);
    EXPECT_EQ([[dialog_ noteConflict] UTF8String], edges);
    EXPECT_NE(print({"Cancel"}).find(edges), std::string::npos);
    set("menu_EdgeStrength", 0);
    choosePaper({@"DuplexTumble", @"Labels"});
    EXPECT_EQ(std::string([[dialog_ noteConflict] UTF8String]),
              "Two-Sided: Short Edge does not go with Media Type: Labels");
    choosePaper({@"None", @"Plain"});
    for (const auto& [field, index] : {std::pair("menu_QuickColor", 3),
                                       {"menu_sSimulationProfile", 1},
                                       {"menu_EdgeStrength", 3},
                                       {"check_ColorAsGrayscale", 1}})
        set(field, index);
    EXPECT_EQ(std::string([[dialog_ noteConflict] UTF8String]),
              "Color as Grayscale: On does not go with Simulation Profile: SWOP Coated")
        << "of two conflicts, the options of one";
    print({"Print", "Close"});
    EXPECT_TRUE(cups_.receivedJob(1)) << cups_.log();
}

TEST_F(DialogActions, SaysWhatKeepsTheJobAndCancelsIt)
{
    ASSERT_TRUE(cups_.administer({"/usr/sbin/cupsdisable", "Office"})) << cups_.problem();
    [[dialog_ window] setCopies:2 pageRanges:@"2-3,5-9"];
    std::string said = print({"Cancel Job", "Close"});
    EXPECT_NE(said.find("Job 1: waiting, 6 pages, the printer has stopped: paused"), std::string::npos)
        << said;
    ASSERT_TRUE(jobState("Office", 1));
    EXPECT_EQ(jobState("Office", 1)->phase, JobPhase::Cancelled);
    EXPECT_FALSE(jobState("Office", 2)) << "one job, not two";
}

TEST_F(DialogActions, BeginsOnTheDefaultPrinterElseOnOneThatThePanelServes)
{
    std::string text = readFile(kPpd);
    std::string other = home_.write("other.ppd", text.substr(0, text.find("*OpenGroup: VelColor/")));
    ASSERT_TRUE(cups_.addQueue("Alien", other)) << cups_.problem();
    auto begins = [this] {
        close();
        open("");
        return std::string([[[[[dialog_ window] printers] selectedItem] representedObject] UTF8String]);
    };
    Sandbox temporary;
    ScopedVariable folder("TMPDIR", temporary.path().string());
    EXPECT_EQ(begins(), "Hall");
    ASSERT_TRUE(cups_.administer({"/usr/sbin/lpadmin", "-d", "Office"})) << cups_.problem();
    EXPECT_EQ(begins(), "Office");
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path())) << "a queue's PPD was left there";
    cups_.stop();
    EXPECT_EQ(begins(), "") << "the sample printer";
}

TEST(Appearance, StaysWhenTheUsersSettingsChange)
{
    applyAppearance("light");
    GSTheme* theme = [GSTheme theme];
    [[NSUserDefaults standardUserDefaults] setObject:@"1" forKey:@"SomethingElse"];
    EXPECT_EQ([GSTheme theme], theme);
}
