// The dialog as a person uses it, in this process: its window, its lists and its alerts, on queues of a real
// server.
#include "dialog/Appearance.h"
#include "dialog/DialogController.h"
#include "dialog/PageCount.h"
#include "script/Outlets.h"
#include "script/ScriptCommands.h"
#include "support/PrivateCups.h"

#import <GNUstepGUI/GSTheme.h>
#include <cups/cups.h>
#include <filesystem>
#include <gtest/gtest.h>

static NSArray* partsOf(NSView* view)
{
    NSMutableArray* parts = [NSMutableArray arrayWithObject:view];
    for (NSUInteger i = 0; i < [parts count]; ++i)
        [parts addObjectsFromArray:[[parts objectAtIndex:i] subviews]];
    return parts;
}

/// Answers modal windows as a user does: presses the button of the next title and keeps what was written.
@interface Answerer : NSObject
{
@public
    std::vector<std::string> buttons;
    std::string written;
    int turns; ///< since a button was pressed; the window that it closed is gone after some
}
@end

@implementation Answerer

- (void)tick:(NSTimer*)timer
{
    wakeModalLoop();
    if (!modalWindowIsOpen() || ++turns < 5)
        return;
    NSButton* next = nil;
    for (id part in partsOf([[NSApp modalWindow] contentView])) {
        if ([part isKindOfClass:[NSTextField class]])
            written += textOf([part stringValue]) + "\n";
        if ([part isKindOfClass:[NSButton class]] && !buttons.empty() &&
            textOf([(NSButton*)part title]) == buttons.front())
            next = part;
    }
    if (next != nil) {
        buttons.erase(buttons.begin());
        turns = 0;
        [next performClick:nil];
    } else if (turns > 50) {
        [NSApp abortModal];
    }
}

@end

namespace {

void turn(NSTimeInterval seconds)
{
    [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:seconds]];
}

class DialogActions : public PrivateCups {
protected:
    void SetUp() override
    {
        PrivateCups::SetUp();
        if (IsSkipped())
            return;
        cupsSetServer(getenv("CUPS_SERVER")); // the library reads it once
        user_ = [[[Answerer alloc] init] autorelease];
        timer_ = [NSTimer timerWithTimeInterval:0.1
                                         target:user_
                                       selector:@selector(tick:)
                                       userInfo:nil
                                        repeats:YES];
        [[NSRunLoop currentRunLoop] addTimer:timer_ forMode:NSModalPanelRunLoopMode];
        std::string pages = home_.write("five.ps", "%!\nshowpage showpage showpage showpage showpage\n");
        ASSERT_EQ(runProcess({"ps2pdf", pages, file_}).status, 0);
        ASSERT_EQ(open("Office"), "Office");
    }

    /// The queue that a dialog opened now begins on.
    std::string open(const std::string& queue)
    {
        close();
        Options options{.plugin = PDE_BUILD_DIR "/R4270.plugin", .printer = queue, .files = {file_}};
        dialog_ = [[DialogController alloc] initWithOptions:options error:nullptr];
        [dialog_ showPanel];
        awaitPanel();
        return textOf([[[[dialog_ window] printers] selectedItem] representedObject]);
    }

    void awaitPanel()
    {
        for (int i = 0; i < 100 && (i < 3 || [dialog_ panel] == nil); ++i)
            turn(0.1);
    }

    void TearDown() override
    {
        close();
        [timer_ invalidate];
    }

    void close()
    {
        [dialog_ terminatePanel];
        [[[dialog_ window] window] orderOut:nil];
        [dialog_ release];
        dialog_ = nil;
    }

    /// What windows said while `act` ran and a user pressed these buttons in them.
    template <typename Act>
    std::string answering(std::vector<std::string> buttons, Act act)
    {
        user_->buttons = buttons;
        user_->written.clear();
        user_->turns = 0;
        act();
        turn(0.3);
        EXPECT_TRUE(user_->buttons.empty()) << user_->buttons.front() << " was not there; " << user_->written;
        return user_->written;
    }

    std::string print(std::vector<std::string> buttons)
    {
        return answering(buttons, [this] { [dialog_ print:nil]; });
    }

    std::string choose(NSPopUpButton* popUp, NSString* beginning, std::vector<std::string> buttons = {})
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
        return choose([[dialog_ window] presets], title, buttons);
    }

    void goTo(NSString* printer)
    {
        choose([[dialog_ window] printers], printer);
        awaitPanel();
    }

    void panel(const std::vector<std::string>& lines)
    {
        for (const std::string& line : lines)
            EXPECT_FALSE(runScriptLine(dialog_, line).contains("error")) << line;
    }

    /// Chooses these where the page has them.
    void paper(const std::vector<NSString*>& choices)
    {
        [dialog_ showPage:kPaperPage];
        for (id popUp in partsOf([dialog_ paperPage]))
            for (NSString* choice : choices)
                if ([popUp isKindOfClass:[NSPopUpButton class]] &&
                    [popUp indexOfItemWithRepresentedObject:choice] >= 0) {
                    [popUp selectItemAtIndex:[popUp indexOfItemWithRepresentedObject:choice]];
                    [popUp sendAction:[popUp action] to:[(NSControl*)popUp target]];
                }
    }

    /// Two of the panel's choices and two of the paper page's that a job would carry now.
    std::string chosen()
    {
        panel({"save"});
        auto options = [dialog_ jobOptions];
        return options["VelQuickColor"] + " " + options["VelBrightness"] + " " + options["Duplex"] + " " +
               options["number-up"];
    }

    Sandbox home_;
    ScopedVariable folder_{"XDG_CONFIG_HOME", home_.path().string()};
    ScopedVariable root_{"PDE_ROOT", home_.path().string()};
    Answerer* user_ = nil;
    NSTimer* timer_ = nil;
    std::string file_ = home_ / "five.pdf";
    DialogController* dialog_ = nil;
};

constexpr auto kNowhere = std::string::npos;

} // namespace

TEST_F(DialogActions, TakesWholeCopiesAndAscendingPagesAndSaysHowFarTheJobIsAndCancelsIt)
{
    for (const auto& [copies, pages] : {std::pair<std::string, std::string>("3x", ""),
                                        {"0", ""},
                                        {"10000", ""},
                                        {"1", "0-2"},
                                        {"1", "3-1"},
                                        {"1", "1-2-3"}}) {
        [[dialog_ window] setCopies:1 pageRanges:stringOf(pages)];
        [(NSTextField*)outletNamed([dialog_ window], "copies_") setStringValue:stringOf(copies)];
        EXPECT_NE(print({"OK"}).find(pages.empty() ? "copies is not valid" : "range is not valid"), kNowhere)
            << copies;
        NSText* editor = [[[dialog_ window] window] fieldEditor:NO forObject:nil];
        EXPECT_EQ(textOf([editor string]), pages.empty() ? copies : pages);
        EXPECT_EQ([editor selectedRange].length, [[editor string] length]) << "it is to be typed over";
    }
    [[dialog_ window] setCopies:2 pageRanges:@"1-3, 5"];
    print({"Close"});
    EXPECT_TRUE(waitUntil([] { return jobState("Office", 1)->pages == 8; })) << "two copies of four pages";
    administer({"/usr/sbin/cupsdisable", "Office"});
    open("Office");
    [[dialog_ window] setCopies:2 pageRanges:@"2-3,5-9"];
    std::string said = print({"Cancel Job", "Close"});
    EXPECT_NE(said.find("Job 2: waiting, 6 pages, the printer has stopped: paused"), kNowhere) << said;
    EXPECT_EQ(jobState("Office", 2)->phase, JobPhase::Cancelled);
    EXPECT_EQ(jobState("Office", 3)->phase, JobPhase::Gone) << "one job, not two";
    std::string late = "%!PS\n%%Pages: (atend)\n" + std::string(5000, '%') + "\n%%Trailer\n%%Pages: 7\n";
    std::string ps = home_.write("late.ps", late), text = home_.write("a.txt", "%%Pages: 3\n");
    EXPECT_EQ(sidesOfJob({.files = {file_, ps}, .options = {{"number-up", "2"}, {"page-ranges", "2-9"}}}), 5);
    EXPECT_EQ(sidesOfJob({.files = {file_, text}}), 0) << "text does not tell";
}

TEST_F(DialogActions, KeepsTheChoicesOfEachPrinterAndPresetsForAllOfTheModel)
{
    const std::string standard = "Document Normal  ", photo = "Photo Normal DuplexNoTumble 2";
    panel({"choose menu_QuickColor 1"});
    paper({@"DuplexNoTumble", @"2"});
    [[dialog_ window] setCopies:4 pageRanges:@"2"];
    EXPECT_NE(preset(@"Save", {"Save"}).find("My Preset"), kNowhere);
    [[dialog_ window] setCopies:1 pageRanges:@""];
    goTo(@"Hall");
    EXPECT_EQ(chosen(), standard);
    preset(@"My Preset");
    EXPECT_EQ(chosen(), photo);
    EXPECT_EQ(textOf([[dialog_ window] pageRanges]) + std::to_string([[dialog_ window] copies]), "24");
    preset(@"Default");
    EXPECT_EQ(chosen(), standard);
    EXPECT_NE(preset(@"Save", {"Save", "Cancel"}).find("already"), kNowhere);
    panel({"choose menu_Brightness 4"});
    goTo(@"Office");
    EXPECT_EQ(chosen(), photo) << "choices of one printer survive those of another";
    preset(@"My Preset");
    EXPECT_EQ(chosen(), photo) << "it was not replaced";
    preset(@"Delete", {"Cancel"});
    preset(@"My Preset");
    preset(@"Delete", {"Delete"});
    EXPECT_EQ([[[dialog_ window] presets] indexOfItemWithTitle:@"My Preset"], -1);
    EXPECT_EQ(chosen(), standard);
    goTo(@"Hall");
    EXPECT_NE(chosen(), standard) << "chosen just before the printer was left";
    Presets* presets = [[[Presets alloc] initWithFolder:@"presets"] autorelease];
    for (NSString* name in @[ @"", @"../x", @".hidden", @"QUORVEX R4270/x" ])
        EXPECT_FALSE([presets save:@{} name:name]) << [name UTF8String] << ": elsewhere, or unseen";
}

TEST_F(DialogActions, SumsUpWhatItPrintsAndRemembersWhatAPrinterWasUsedWith)
{
    auto summary = [this] {
        [dialog_ showPage:kSummaryPage];
        id page = outletNamed(dialog_, "summary_");
        NSTableView* table = [page documentView];
        std::string cells;
        for (NSInteger row = 0; row < [table numberOfRows]; ++row)
            for (NSTableColumn* column in [table tableColumns])
                cells += textOf([page tableView:table objectValueForTableColumn:column row:row]) + ",";
        return cells;
    };
    EXPECT_EQ(summary().find("Quick Color,Document,"), 0u) << "one copy of all pages goes without saying";
    panel({"choose menu_QuickColor 1"});
    paper({@"DuplexNoTumble", @"2", @"reverse", @"separate-documents-collated-copies"});
    EXPECT_FALSE([dialog_ jobOptions].contains("MediaType")) << "the queue may have another default";
    [[dialog_ window] setCopies:3 pageRanges:@"1-2"];
    EXPECT_EQ(textOf([dialog_ noteConflict]), "With 2 pages per sheet the page numbers count printed sides");
    EXPECT_EQ(summary().find("Copies,3,Pages,1-2,Quick Color,Photo,"), 0u) << summary();
    EXPECT_TRUE(summary().ends_with("CMYK Gray Treatment,CMYK,Paper Size,A4,Paper Source,Auto,Media Type,"
                                    "Plain Paper,Two-Sided,Long Edge,Pages per Sheet,2,Page Order,"
                                    "Last to First,Copies in Order,Copy by Copy (Collated),"))
        << summary();
    print({"Print", "Close"});
    std::string sent = receivedJob(1);
    EXPECT_NE(sent.find("*VelGraphicsEdgeEnhance Off"), kNowhere) << "the quick color's own values";
    EXPECT_EQ(open("Office"), "Office");
    EXPECT_EQ(chosen(), "Photo Normal DuplexNoTumble 2");
    EXPECT_EQ([[dialog_ window] copies], 1);
    open("Hall");
    EXPECT_EQ(chosen(), "Document Normal  ");
}

TEST_F(DialogActions, PrintsOnThePrinterThatIsShownOrNotAtAll)
{
    auto refuses = [this](const std::string& problem) {
        EXPECT_NE(print({"OK"}).find("Office: " + problem), kNowhere);
        EXPECT_EQ(textOf([[[dialog_ window] printers] titleOfSelectedItem]), "Office – " + problem);
    };
    stop();
    refuses("the printing system does not answer");
    start();
    administer({"/usr/sbin/cupsreject", "Office"});
    EXPECT_NE(print({"OK"}).find("not accepting jobs"), kNowhere);
    turn(0.5);
    EXPECT_NE([dialog_ panel], nil) << "the user can go on";
    administer({"/usr/sbin/lpadmin", "-x", "Office"});
    refuses("no longer on the server");
    goTo(@"Hall");
    print({"Close"});
    EXPECT_NE(receivedJob(1), "") << "the first job of all";
}

TEST_F(DialogActions, NamesChoicesThatDoNotGoTogetherAndAsks)
{
    const std::string edges = "EconoMode: On does not go with Edge Type: Strong";
    panel({"check check_EconomyPrint 1", "choose menu_EdgeStrength 3"});
    EXPECT_NE(print({"Cancel"}).find(edges), kNowhere);
    EXPECT_EQ(textOf([[dialog_ window] note]), edges);
    panel({"choose menu_EdgeStrength 0"});
    paper({@"DuplexTumble", @"Labels"});
    EXPECT_EQ(textOf([dialog_ noteConflict]), "Two-Sided: Short Edge does not go with Media Type: Labels");
    paper({@"None", @"Plain"});
    panel({"choose menu_QuickColor 3", "choose menu_sSimulationProfile 1", "choose menu_EdgeStrength 3",
           "check check_ColorAsGrayscale 1"});
    EXPECT_EQ(textOf([dialog_ noteConflict]),
              "Color as Grayscale: On does not go with Simulation Profile: SWOP Coated")
        << "of two conflicts, the options of one";
    print({"Print", "Close"});
    EXPECT_NE(receivedJob(1), "");
}

TEST_F(DialogActions, BeginsOnTheDefaultPrinterElseOnOneThatThePanelServes)
{
    std::string text = readFile(kPpd);
    std::string other = home_.write("other.ppd", text.substr(0, text.find("*OpenGroup: VelColor/")));
    addQueue("Alien", other);
    Sandbox temporary;
    ScopedVariable folder("TMPDIR", temporary.path().string());
    EXPECT_EQ(open(""), "Hall");
    administer({"/usr/sbin/lpadmin", "-d", "Office"});
    EXPECT_EQ(open(""), "Office");
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path())) << "a queue's PPD was left there";
    stop();
    EXPECT_EQ(open(""), "") << "the sample printer";
}

TEST(Appearance, StaysWhenTheUsersSettingsChange)
{
    applyAppearance("light");
    GSTheme* theme = [GSTheme theme];
    [[NSUserDefaults standardUserDefaults] setObject:@"1" forKey:@"SomethingElse"];
    EXPECT_EQ([GSTheme theme], theme);
}
