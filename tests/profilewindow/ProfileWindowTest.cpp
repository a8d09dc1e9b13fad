#include "profiles/ListFixture.h"
#include "support/DialogScript.h"

#include <regex>

using nlohmann::json;

namespace {

constexpr char kNetworkQueue[] = "lpd://127.0.0.1/queue";
constexpr char kUsbQueue[] = "usb://QUORVEX/R4270";

/// The count, and every slot in use.
json shown(const ProfileList& list)
{
    json all = {list.iNum};
    for (const ProfileRecord& one : list.records)
        if (one.InMenu != 0)
            all.push_back({&one - list.records, one.IndexOnDevice, one.InMenu, one.ProfileClass,
                           nameText(one.FileName).data(), nameText(one.ProfileName).data(), one.Location});
    return all;
}

/// The window in the print dialog, with the helper in place and a list file of the test's own.
class ProfileWindowTest : public ListFixture {
protected:
    void store(const std::vector<ProfileRecord>& records)
    {
        writeListFile(listFileText(listOf(records), {}, {}));
    }

    /// A line of the script, and what the window should show after it ("" for anything).
    struct Step {
        std::string line, window;
    };

    /// Says the lines to a panel for the queue, and compares.
    DialogRun run(const std::string& uri, const std::vector<Step>& steps)
    {
        std::vector<std::string> script = {"open", "restore"};
        for (const Step& step : steps)
            script.push_back(step.line);
        DialogRun dialog = runDialog({"--ppd", kPpd, "--queue", "test", "--device-uri", uri}, script);
        EXPECT_EQ(dialog.process.status, 0) << dialog.process.err;
        for (size_t i = 0; i < steps.size(); ++i) {
            EXPECT_FALSE(dialog[i + 2].contains("error")) << steps[i].line << ": " << dialog[i + 2];
            if (!steps[i].window.empty())
                EXPECT_EQ(shownIn(dialog[i + 2]), steps[i].window) << i << ": " << steps[i].line;
        }
        return dialog;
    }

    /// The initials of the enabled controls, the mode, the row, the fields; then a sign for each profile: x
    /// is ticked, X and + are on the printer.
    static std::string shownIn(const json& window)
    {
        if (!window.value("visible", false))
            return "closed";
        std::string text;
        for (const char* name :
             {"_addButton", "_editButton", "_deleteButton", "_localOK", "_profileMenu", "_fileNameEdit"})
            text += window["enabled"].value(name, false) ? std::string(1, name[1]) : "";
        text += " " + window["mode"].dump() + " " + window["selected"].dump() + " ";
        for (const char* field : {"_fileNameEdit", "_profileNameEdit"})
            text += std::string(window["fields"][field]["text"]) + "|";
        for (const json& row : window["rows"])
            text += std::string("-+xX")[(row["inmenu"] == true) * 2 + (row["icon"] == true)];
        return text;
    }

    void expectStored(const std::vector<ProfileRecord>& first, const std::vector<ProfileRecord>& third = {})
    {
        ASSERT_EQ(readAll(), 0);
        EXPECT_EQ(json({shown(rgb()), shown(sim()), shown(dst())}),
                  json({shown(listOf(first)), shown({}), shown(listOf(third))}));
    }
};

constexpr ProfileRecord kFound = {1, kFoundListed, 1, "found.icc", "On the printer", kOnCard, 0};
constexpr ProfileRecord kHidden = {2, kFoundHidden, 2, "hidden.icc", "Hidden", kOnDisk, 0};
constexpr ProfileRecord kByHand = {503, kByHandListed, 2, "byhand.icc", "By hand", kOnDisk, 0};
constexpr ProfileRecord kGone = {4, kGoneListed, 2, "gone.icc", "Gone", kOnDisk, 0};

} // namespace

TEST_F(ProfileWindowTest, StoresWhatASessionDidAndKeepsTheChoicesMadeBeforeIt)
{
    store({kFound, kHidden, kByHand, kGone, {5, kByHandHidden, 2, "odd.icc", "Odd", kOnDisk, 0}});
    // Reading cuts this name at 31 bytes, inside its last character: no text, rather than half a character.
    std::string cut = "<string>" + std::string(30, 'a') + "\u00FC</string>";
    writeListFile(std::regex_replace(readFile(currentListPath()), std::regex("<string>Odd</string>"), cut));
    const json controls =
        run(kNetworkQueue,
            {
                {"choose menu_tRGBSource 4", ""},
                {"choose menu_iRGBSource 6", ""},
                {"choose menu_tHalftone 3", ""},
                {"press button_ManageProfile", ""},
                {"row 4", "aedp 0 4 odd.icc||X+xx-"},
                {"list 1", "ap 0 -1 ||"},
                {"list 0", "ap 0 -1 ||X+xx-"},
                // What is on the printer is not deleted, and keeps its file name.
                {"row 0", "aep 0 0 found.icc|On the printer|X+xx-"},
                {"press _editButton", "l 2 0 found.icc|On the printer|X+xx-"},
                {"type _profileNameEdit Renamed", "l 2 0 found.icc|Renamed|X+xx-"},
                {"press _localOK", "ap 0 -1 ||X+xx-"},
                // A name that another profile has leaves the edit open.
                {"row 2", "aedp 0 2 byhand.icc|By hand|X+xx-"},
                {"press _editButton", "lf 2 2 byhand.icc|By hand|X+xx-"},
                {"type _fileNameEdit gone.icc", "lf 2 2 gone.icc|By hand|X+xx-"},
                {"press _localOK", "lf 2 2 gone.icc|By hand|X+xx-"},
                {"type _fileNameEdit byhand.icm", ""},
                {"type _profileNameEdit ", "lf 2 2 byhand.icm||X+xx-"},
                {"press _localOK", "ap 0 -1 ||X+xx-"},
                {"press _addButton", "f 1 -1 ||X+xx-"},
                {"type _fileNameEdit new one@.icc", "lf 1 -1 newone.icc||X+xx-"},
                {"type _profileNameEdit Größe + Proof", "lf 1 -1 newone.icc|Gre + Proof|X+xx-"},
                {"press _localCancel", "ap 0 -1 ||X+xx-"},
                // Only a usable name of a browsed file is taken.
                {"press _addButton", ""},
                {"browse-answer /somewhere/two.full.stops", ""},
                {"press _browse", "f 1 -1 ||X+xx-"},
                {"browse-answer /some where/long.extension-of-31-characters", ""},
                {"press _browse", ""},
                {"browse-answer ", ""},
                {"press _browse", "lf 1 -1 long.extension-of-31-characters||X+xx-"},
                {"press _localOK", "ap 0 -1 ||X+xx-x"},
                {"tick 1", "aep 0 1 hidden.icc|Hidden|XXxx-x"},
                {"tick 5", ""},
                {"row 4", ""},
                {"press _deleteButton", "ap 0 -1 ||XXxx-"},
                {"row 3", "aedp 0 3 gone.icc|Gone|XXxx-"},
                {"press _deleteButton", "ap 0 -1 ||XXx-"},
                // Another list may have the same name.
                {"list 2", ""},
                {"press _addButton", ""},
                {"type _fileNameEdit byhand.icm", ""},
                {"press _localOK", "ap 0 -1 ||x"},
                {"press window-ok", "closed"},
                {"controls", ""},
            })
            .answers.back();
    EXPECT_EQ(controlRow(controls, "menu_iRGBSource")["title"], "sRGB") << "its profile was deleted";
    EXPECT_EQ(controlRow(controls, "menu_tRGBSource")["title"], "found.icc(Renamed)Card");
    EXPECT_EQ(controlRow(controls, "menu_tHalftone")["value"], 3);
    EXPECT_EQ(controlRow(controls, "menu_iDestinationProfile")["items"].back(), "byhand.icm()Disk");
    expectStored({{1, kFoundListed, 1, "found.icc", "Renamed", kOnCard, 0},
                  {2, kFoundListed, 2, "hidden.icc", "Hidden", kOnDisk, 0},
                  {503, kByHandListed, 2, "byhand.icm", "", kOnDisk, 0},
                  {505, kByHandHidden, 2, "long.extension-of-31-characters", "", kOnDisk, 0}},
                 {{500, kByHandListed, 2, "byhand.icm", "", kOnDisk, 0}});
}

TEST_F(ProfileWindowTest, ForgetsWhatWasCancelledAndKeepsThePrintersProfilesThatAUsbQueueCannotSee)
{
    // The last profile's name is no text, and so is not in the file.
    store({kFound, kHidden, kByHand, {6, kFoundListed, 2, "second.icc", "\x01", kOnDisk, 0}});
    run(kUsbQueue, {{"press button_ManageProfile", ""},
                    {"row 2", "aedp 0 2 second.icc||xxx"},
                    {"press _editButton", ""},
                    {"type _fileNameEdit hidden.icc", ""},
                    {"type _profileNameEdit Name", ""},
                    {"press _localOK", "ap 0 -1 ||xxx"},
                    {"row 2", ""},
                    {"press _deleteButton", "ap 0 -1 ||xx"},
                    {"tick 1", ""},
                    {"press _addButton", "f 1 1 ||x-"},
                    {"press window-cancel", "closed"},
                    {"press button_ManageProfile", ""},
                    {"row 2", "aedp 0 2 second.icc||xxx"},
                    {"press _deleteButton", "ap 0 -1 ||xx"},
                    {"row 0", "aedp 0 0 found.icc|On the printer|xx"},
                    {"press _editButton", "lf 2 0 found.icc|On the printer|xx"},
                    {"type _fileNameEdit mine.icc", ""},
                    {"press _localOK", "ap 0 -1 ||xx"},
                    {"press window-ok", "closed"}});
    expectStored({kHidden, {1, kByHandListed, 1, "mine.icc", "On the printer", kOnDisk, 0}, kByHand});
}

TEST_F(ProfileWindowTest, IsClosedAndNothingIsDiscoveredForAUserWhoMayNotManageTheLists)
{
    installHelper("echo \"$1=FALSE\"; exit 1");
    DialogRun dialog = run(kNetworkQueue, {{"view", ""}, {"controls", ""}});
    EXPECT_EQ(controlRow(dialog[3], "button_ManageProfile")["enabled"], false);
    EXPECT_EQ(commands(), "velPListIsAdminProfile_XPC\nvelPListIsAdminProfile_XPC\n");
}

TEST_F(ProfileWindowTest, KeepsAFullListWhenNothingCanBeAddedAndTheHelperRefusesTheWrite)
{
    std::vector<ProfileRecord> records;
    for (int i = 0; i < kProfileSlots; ++i)
        records.push_back(record(kByHandListed, "file" + std::to_string(i) + ".icc"));
    store(records);
    std::string before = readFile(currentListPath()), rows(kProfileSlots, 'x');
    installHelper(
        "[ \"$1\" = velPListIsAdminProfile_XPC ] && echo \"$1=TRUE\" || { echo \"$1=FALSE\"; exit 1; }");
    DialogRun dialog = run(kNetworkQueue, {{"press button_ManageProfile", ""},
                                           {"press _addButton", ""},
                                           {"type _fileNameEdit one.icc", ""},
                                           {"press _localOK", "lf 1 -1 one.icc||" + rows},
                                           {"press _localCancel", ""},
                                           {"row 499", ""},
                                           {"press _deleteButton", "ap 0 -1 ||" + rows.substr(1)},
                                           {"press window-ok", "closed"},
                                           {"controls", ""}});
    EXPECT_EQ(readFile(currentListPath()), before);
    EXPECT_EQ(controlRow(dialog.answers.back(), "menu_iRGBSource")["items"].back(),
              "file499.icc(Profile 6)Disk");
}

TEST_F(ProfileWindowTest, NeedsNoMoreMemoryTheHundredthTime)
{
#if __has_feature(address_sanitizer)
    GTEST_SKIP() << "the sanitizer keeps freed memory";
#endif
    store({kFound, kHidden, kByHand, kGone});
    auto peakAfter = [this](int panels) {
        std::vector<Step> steps;
        for (int i = 0; i < panels; ++i)
            for (const char* line : {"press button_ManageProfile", "press window-cancel", "summary", "save",
                                     "terminate", "open", "restore"})
                steps.push_back({line, ""});
        return run(kNetworkQueue, steps).process.peakKilobytes;
    };
    long few = peakAfter(10);
    EXPECT_LT(peakAfter(100) - few, 1024) << few;
}
