#include "profiles/ListFixture.h"
#include "support/DialogScript.h"

#include <regex>

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

constexpr char kNetworkQueue[] = "lpd://127.0.0.1/queue";
constexpr char kUsbQueue[] = "usb://QUORVEX/R4270";

ProfileRecord made(int32_t index, int32_t inMenu, const std::string& file, const std::string& name,
                   int32_t location = kOnDisk, int32_t profileClass = 2)
{
    ProfileRecord record{index, inMenu, profileClass, {}, {}, location, 0};
    setNameText(record.FileName, file);
    setNameText(record.ProfileName, name);
    return record;
}

std::string shown(const ProfileRecord& record)
{
    return std::to_string(record.IndexOnDevice) + "/" + std::to_string(record.InMenu) + "/" +
           std::to_string(record.ProfileClass) + "/" + std::string(nameText(record.FileName)) + "/" +
           std::string(nameText(record.ProfileName)) + "/" + std::to_string(record.Location);
}

/// Every slot that holds something, one a line, behind the count.
std::string shown(const ProfileList& list)
{
    std::string text = std::to_string(list.iNum) + "\n";
    for (int slot = 0; slot < kProfileSlots; ++slot) {
        std::string line = shown(list.records[slot]);
        if (line != "0/0/0///0")
            text += std::to_string(slot) + ": " + line + "\n";
    }
    return text;
}

/// The window in the print dialog, with the helper in place and a list file of the test's own.
class ProfileWindowTest : public ListFixture {
protected:
    ProfileWindowTest()
    {
        fs::path program = helperExecutable();
        fs::create_directories(program.parent_path());
        fs::create_symlink(PDE_HELPER, program);
        fs::create_directories(preferencesFolder());
        fs::path icon = fileExistsIcon();
        fs::create_directories(icon.parent_path());
        fs::copy_file(PDE_SOURCE_DIR "/PDE_COL/Resources/fileExistqxR4270.icns", icon);
    }

    void store(const ProfileList& first, const ProfileList& second = {}, const ProfileList& third = {})
    {
        ASSERT_EQ(VelPListWriteProfile_All(&first, &second, &third), 0);
    }

    /// Opens the window in a panel for the queue, then the script's lines.
    void run(const std::string& uri, const std::vector<std::string>& lines)
    {
        script = {"open", "restore", "press button_ManageProfile"};
        script.insert(script.end(), lines.begin(), lines.end());
        dialog =
            runDialog({"--ppd", PDE_SOURCE_DIR "/printer/R4270.ppd", "--queue", "test", "--device-uri", uri},
                      script, {"PDE_ROOT=" + sandbox.path().string()});
        ASSERT_EQ(dialog.answers.size(), script.size()) << dialog.process.err;
        for (size_t i = 0; i < script.size(); ++i)
            ASSERT_FALSE(dialog.answers[i].contains("error")) << script[i] << ": " << dialog.answers[i];
        ASSERT_EQ(dialog.process.status, 0);
    }

    /// The answer to the `n`th line (from 0) that is `line`.
    const json& after(const std::string& line, int n = 0) const
    {
        static const json none;
        for (size_t i = 0; i < script.size(); ++i)
            if (script[i] == line && n-- == 0)
                return dialog.answers[i];
        ADD_FAILURE() << "no line " << line;
        return none;
    }

    /// "Add Edit Delete OK" of the enabled buttons among these, then the mode and the row.
    static std::string buttons(const json& window)
    {
        std::string text;
        for (const char* name : {"_addButton", "_editButton", "_deleteButton", "_localOK", "_profileMenu"})
            text += window["enabled"].value(name, false) ? std::string(name) + " " : "";
        return text + window["mode"].dump() + " " + window["selected"].dump();
    }
    static std::string fileName(const json& window) { return window["fields"]["_fileNameEdit"]["text"]; }
    static std::string profileName(const json& window)
    {
        return window["fields"]["_profileNameEdit"]["text"];
    }

    void expectStored(const ProfileList& first, const ProfileList& second = {}, const ProfileList& third = {})
    {
        for (int i = 0; i < kProfileListCount; ++i)
            lists[i] = {};
        ASSERT_EQ(readAll(), 0);
        EXPECT_EQ(shown(rgb()), shown(first));
        EXPECT_EQ(shown(sim()), shown(second));
        EXPECT_EQ(shown(dst()), shown(third));
    }

    std::vector<std::string> script;
    DialogRun dialog;
};

const ProfileRecord kFound = made(1, kFoundListed, "found.icc", "On the printer", kOnCard, 1);
const ProfileRecord kHidden = made(2, kFoundHidden, "hidden.icc", "Hidden");
const ProfileRecord kByHand = made(503, kByHandListed, "byhand.icc", "By hand");
const ProfileRecord kGone = made(4, kGoneListed, "gone.icc", "Gone");

} // namespace

TEST_F(ProfileWindowTest, ShowsWhatTheListsHold)
{
    store(listOf({kFound, kHidden, kByHand, kGone, made(5, kByHandHidden, "odd.icc", "Odd")}));
    // Reading cuts this name at 31 bytes, inside its last character.
    std::string cut = "<string>" + std::string(30, 'a') + "\u00FC</string>";
    writeListFile(std::regex_replace(readFile(currentListPath()), std::regex("<string>Odd</string>"), cut));
    run(kNetworkQueue, {"window", "row 0", "row 2", "list 1", "press window-cancel"});
    const json& window = after("window");
    EXPECT_EQ(buttons(window), "_addButton _profileMenu 0 -1");
    ASSERT_EQ(window["rows"].size(), 5u);
    EXPECT_EQ(window["rows"][0]["filename"], "found.icc");
    EXPECT_EQ(window["rows"][4]["filename"], "odd.icc");
    EXPECT_EQ(window["rows"][4]["profilename"], "") << "no text, rather than half a character";
    EXPECT_EQ(window["rows"][0]["profilename"], "On the printer");
    EXPECT_EQ(window["rows"][0]["location"], "Card");
    EXPECT_EQ(window["rows"][2]["location"], "Disk");
    std::string ticks, icons;
    for (const json& row : window["rows"]) {
        ticks += row["inmenu"] == true ? "x" : "-";
        icons += row["icon"] == true ? "x" : "-";
    }
    EXPECT_EQ(ticks, "x-xx-");
    EXPECT_EQ(icons, "xx---");
    EXPECT_EQ(buttons(after("row 0")), "_addButton _editButton _profileMenu 0 0")
        << "no delete on the printer";
    EXPECT_EQ(buttons(after("row 2")), "_addButton _editButton _deleteButton _profileMenu 0 2");
    EXPECT_EQ(fileName(after("row 2")), "byhand.icc");
    EXPECT_EQ(buttons(after("list 1")), "_addButton _profileMenu 0 -1");
    EXPECT_EQ(fileName(after("list 1")), "");
    EXPECT_EQ(after("list 1")["rows"].size(), 0u);
}

TEST_F(ProfileWindowTest, AddsARefusedDuplicateOnceAndTheSameNameElsewhere)
{
    store(listOf({kFound, kByHand}));
    run(kNetworkQueue,
        {"row 1", "press _addButton", "row 0", "type _fileNameEdit ", "type _fileNameEdit .",
         "press _localOK", "type _fileNameEdit new one@.icc", "type _profileNameEdit Größe + Proof",
         "press _localOK", "press _addButton", "type _fileNameEdit newone.icc", "press _localOK",
         "press _localCancel", "list 2", "press _addButton", "type _fileNameEdit newone.icc",
         "press _localOK", "press window-ok", "controls"});
    EXPECT_EQ(buttons(after("press _addButton")), "1 1");
    EXPECT_EQ(buttons(after("row 0")), "1 1") << "the selection stays while a profile is added";
    EXPECT_EQ(buttons(after("type _fileNameEdit .")), "1 1");
    EXPECT_EQ(buttons(after("type _fileNameEdit new one@.icc")), "_localOK 1 1");
    EXPECT_EQ(fileName(after("type _fileNameEdit new one@.icc")), "newone.icc");
    EXPECT_EQ(profileName(after("type _profileNameEdit Größe + Proof")), "Gre + Proof");
    EXPECT_EQ(buttons(after("press _localOK", 1)), "_addButton _profileMenu 0 -1");
    EXPECT_EQ(buttons(after("press _localOK", 2)), "_localOK 1 -1") << "a duplicate leaves the edit open";
    EXPECT_EQ(buttons(after("press _localCancel")), "_addButton _profileMenu 0 -1");
    expectStored(listOf({kFound, kByHand, made(502, kByHandListed, "newone.icc", "Gre + Proof")}), {},
                 listOf({made(500, kByHandListed, "newone.icc", "")}));
    EXPECT_EQ(controlRow(after("controls"), "menu_iRGBSource")["items"].back(),
              "newone.icc(Gre + Proof)Disk");
    EXPECT_EQ(controlRow(after("controls"), "menu_iDestinationProfile")["items"].back(), "newone.icc()Disk");
}

TEST_F(ProfileWindowTest, EditsTicksAndDeletes)
{
    store(listOf({kFound, kHidden, kByHand, kGone}));
    run(kNetworkQueue, {"row 0",
                        "press _editButton",
                        "type _fileNameEdit other",
                        "type _profileNameEdit Renamed",
                        "press _localOK",
                        "row 2",
                        "press _editButton",
                        "row 1",
                        "list 1",
                        "type _fileNameEdit gone.icc",
                        "press _localOK",
                        "type _fileNameEdit byhand.icm",
                        "type _profileNameEdit ",
                        "press _localOK",
                        "tick 1",
                        "tick 2",
                        "tick 3",
                        "tick 3",
                        "row 3",
                        "press _deleteButton",
                        "row 2",
                        "press _deleteButton",
                        "press window-ok"});
    EXPECT_EQ(buttons(after("press _editButton")), "_localOK 2 0");
    EXPECT_FALSE(after("press _editButton")["enabled"]["_fileNameEdit"])
        << "it is on the printer under this name";
    EXPECT_EQ(fileName(after("type _fileNameEdit other")), "found.icc");
    EXPECT_EQ(buttons(after("row 1")), "_localOK 2 2");
    EXPECT_EQ(buttons(after("press _localOK", 1)), "_localOK 2 2") << "another profile has the name";
    EXPECT_EQ(buttons(after("press _deleteButton")), "_addButton _profileMenu 0 -1");
    ProfileRecord renamed = kFound, ticked = kHidden, freed = kByHand, last = kGone;
    setNameText(renamed.ProfileName, "Renamed");
    ticked.InMenu = kFoundListed;
    setNameText(freed.FileName, "byhand.icm");
    setNameText(freed.ProfileName, "");
    freed.InMenu = last.InMenu = kFreeSlot;
    ProfileList expected = listOf({renamed, ticked, freed, last});
    expected.iNum = 2;
    expectStored(expected);
}

TEST_F(ProfileWindowTest, TakesOnlyAUsableNameOfABrowsedFile)
{
    store({});
    std::string folder = "/somewhere else/";
    std::vector<std::string> lines = {"press _addButton"};
    for (const char* name : {"first.icc", "", "two.full.stops", "12345678901234567890123456789012",
                             "com@.icc", "long.extension-of-31-characters"}) {
        lines.push_back("browse-answer " + (*name ? folder + name : ""));
        lines.push_back("press _browse");
    }
    lines.insert(lines.end(), {"press _localOK", "press window-ok"});
    run(kNetworkQueue, lines);
    const char* names[] = {"first.icc", "first.icc", "", "", "", "long.extension-of-31-characters"};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(fileName(after("press _browse", i)), names[i]) << i;
        EXPECT_EQ(after("press _browse", i)["enabled"]["_localOK"], *names[i] != '\0') << i;
    }
    expectStored(listOf({made(500, kByHandListed, names[5], "")}));
}

TEST_F(ProfileWindowTest, LeavesTheFileAloneWhenItIsCancelled)
{
    store(listOf({kFound, kByHand}));
    std::string before = readFile(currentListPath());
    std::vector<std::string> edits = {"press _addButton",    "type _fileNameEdit a",
                                      "press _localOK",      "row 1",
                                      "press _deleteButton", "tick 0"};
    std::vector<std::string> lines = edits;
    lines.insert(lines.end(),
                 {"press window-cancel", "press button_ManageProfile", "window", "press window-cancel"});
    run(kNetworkQueue, lines);
    EXPECT_EQ(after("tick 0")["rows"].size(), 2u);
    EXPECT_EQ(after("window")["rows"][0]["inmenu"], true) << "it opens with the lists as they are stored";
    EXPECT_EQ(after("press window-cancel")["visible"], false);
    EXPECT_EQ(readFile(currentListPath()), before);
    EXPECT_EQ(std::distance(fs::directory_iterator(preferencesFolder()), {}), 2) << "the list and its lock";
}

TEST_F(ProfileWindowTest, KeepsThePrintersProfilesThatAUsbQueueCannotSee)
{
    ProfileRecord second = made(6, kFoundListed, "second.icc", "Second");
    store(listOf({kFound, kHidden, kByHand, second}));
    run(kUsbQueue, {"window", "row 0", "press _editButton", "type _fileNameEdit mine.icc", "press _localOK",
                    "row 2", "press _deleteButton", "press _addButton", "type _fileNameEdit added.icc",
                    "press _localOK", "press window-ok"});
    ASSERT_EQ(after("window")["rows"].size(), 3u) << "the hidden one is left out";
    EXPECT_EQ(after("window")["rows"][0]["icon"], false);
    EXPECT_EQ(buttons(after("row 0")), "_addButton _editButton _deleteButton _profileMenu 0 0");
    ProfileRecord mine = kFound;
    mine.InMenu = kByHandListed;
    mine.Location = kOnDisk;
    setNameText(mine.FileName, "mine.icc");
    expectStored(listOf({kHidden, mine, kByHand, made(502, kByHandListed, "added.icc", "")}));
}

TEST_F(ProfileWindowTest, ForgetsWhatWasDeletedBeforeACancel)
{
    ProfileRecord kept = kFound;
    store(listOf({kFound, kByHand}));
    run(kUsbQueue, {"row 0", "press _deleteButton", "press window-cancel", "press button_ManageProfile",
                    "press window-ok"});
    kept.InMenu = kByHandListed;
    expectStored(listOf({kept, kByHand}));
}

TEST_F(ProfileWindowTest, KeepsTheChoicesThatWereMadeBeforeItOpened)
{
    store(listOf({kByHand}));
    run(kNetworkQueue, {"press window-cancel", "choose menu_iRGBSource 4", "choose menu_tHalftone 3",
                        "press button_ManageProfile", "press window-ok", "controls"});
    EXPECT_EQ(after("choose menu_iRGBSource 4")["title"], "byhand.icc(By hand)Disk");
    EXPECT_EQ(controlRow(after("controls"), "menu_iRGBSource")["value"], 4);
    EXPECT_EQ(controlRow(after("controls"), "menu_tHalftone")["value"], 3);
}

TEST_F(ProfileWindowTest, IsClosedAndNothingIsDiscoveredForAUserWhoMayNotManageTheLists)
{
    fs::remove(helperExecutable());
    installHelper("echo \"$1=FALSE\"; exit 1");
    dialog = runDialog({"--ppd", PDE_SOURCE_DIR "/printer/R4270.ppd", "--device-uri", kNetworkQueue},
                       {"open", "view", "controls"}, {"PDE_ROOT=" + sandbox.path().string()});
    EXPECT_EQ(controlRow(dialog[2], "button_ManageProfile")["enabled"], false);
    EXPECT_EQ(commands(), "velPListIsAdminProfile_XPC\nvelPListIsAdminProfile_XPC\n");
}

TEST_F(ProfileWindowTest, ClosesAndKeepsTheListsWhenTheHelperRefusesTheWrite)
{
    store(listOf({kByHand}));
    std::string before = readFile(currentListPath());
    fs::remove(helperExecutable());
    installHelper(
        "[ \"$1\" = velPListIsAdminProfile_XPC ] && echo \"$1=TRUE\" || { echo \"$1=FALSE\"; exit 1; }");
    run(kNetworkQueue, {"row 0", "press _deleteButton", "press window-ok", "controls"});
    EXPECT_EQ(after("press window-ok")["visible"], false);
    EXPECT_EQ(readFile(currentListPath()), before);
    EXPECT_EQ(controlRow(after("controls"), "menu_iRGBSource")["items"].back(), "byhand.icc(By hand)Disk");
}

TEST_F(ProfileWindowTest, FallsBackToTheDefaultWhenTheChosenProfileIsDeleted)
{
    store(listOf({kByHand, kGone}));
    run(kNetworkQueue, {"press window-cancel", "controls"});
    const json before = controlRow(after("controls"), "menu_iRGBSource");
    size_t firstProfile = before["items"].size() - 2;
    std::string choose = "choose menu_iRGBSource " + std::to_string(firstProfile);
    run(kNetworkQueue, {"press window-cancel", choose, "press button_ManageProfile", "row 0",
                        "press _deleteButton", "press window-ok", "controls"});
    EXPECT_EQ(after(choose)["value"], firstProfile);
    const json& now = controlRow(after("controls"), "menu_iRGBSource");
    EXPECT_EQ(now["items"].size(), before["items"].size() - 1);
    EXPECT_EQ(now["value"], before["value"]);
}

TEST_F(ProfileWindowTest, NeedsNoMoreMemoryTheHundredthTime)
{
#if __has_feature(address_sanitizer)
    GTEST_SKIP() << "the sanitizer keeps freed memory";
#endif
    store(listOf({kFound, kHidden, kByHand, kGone}));
    auto peakAfter = [this](int openings) {
        std::vector<std::string> lines = {"press window-cancel"};
        for (int i = 1; i < openings; ++i)
            lines.insert(lines.end(), {"press button_ManageProfile", "press window-cancel"});
        run(kNetworkQueue, lines);
        return dialog.process.peakKilobytes;
    };
    long few = peakAfter(10);
    EXPECT_LT(peakAfter(100) - few, 1024) << few;
}
