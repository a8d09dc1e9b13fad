#include "support/SimulatedPrinter.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sstream>

namespace {

const std::string kTable = ".1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1";

using Lines = std::vector<std::string>;

/// Asks with one of net-snmp's own commands, as the panel would: version 1, community "vislaq". `more` comes
/// last, so that it can say otherwise. Nothing of this machine's configuration has a say.
ProcessResult ask(const std::string& command, const SimulatedPrinter& printer, const Lines& more)
{
    Sandbox nothing;
    ProcessOptions options;
    options.environment = {"MIBS=", "SNMPCONFPATH=" + nothing.path().string(),
                           "SNMP_PERSISTENT_DIR=" + nothing.path().string()};
    Lines arguments = {command, "-On", "-t", "0.5", "-r", "0", "-v", "1", "-c", "vislaq"};
    for (const std::string& word : more)
        arguments.push_back(word == "AGENT" ? printer.address() : word);
    return runProcess(arguments, options);
}

/// The objects that snmpwalk shows, names relative to the table.
Lines walk(const SimulatedPrinter& printer)
{
    std::istringstream shown(ask("snmpwalk", printer, {"AGENT", kTable}).out);
    Lines lines;
    for (std::string line; std::getline(shown, line);)
        if (line.starts_with(kTable))
            lines.push_back(line.substr(kTable.size() + 1));
    return lines;
}

const char* const kTwoProfiles = "# Two of them.\n"
                                 "profile 2 5 \"Coated \\\"A\\\" #1\" \"C#1.ICC\" 3  # the second row first\n"
                                 "\n"
                                 "profile 1 4 \"Büro\" \"OFFICE.ICC\" 1 9 -7\n";

const Lines kTwoProfilesWalked = {"1.1.1 = INTEGER: 1",
                                  "1.1.2 = INTEGER: 2",
                                  "2.1.1 = INTEGER: 4",
                                  "2.1.2 = INTEGER: 5",
                                  "3.1.1 = Hex-STRING: 42 C3 BC 72 6F ",
                                  "3.1.2 = STRING: \"Coated \\\"A\\\" #1\"",
                                  "4.1.1 = STRING: \"OFFICE.ICC\"",
                                  "4.1.2 = STRING: \"C#1.ICC\"",
                                  "5.1.1 = INTEGER: 1",
                                  "5.1.2 = INTEGER: 3",
                                  "6.1.1 = INTEGER: 9",
                                  "6.1.2 = INTEGER: 0",
                                  "7.1.1 = INTEGER: -7",
                                  "7.1.2 = INTEGER: 0"};

} // namespace

TEST(SimulatedPrinter, ServesTheProfilesOfItsFileColumnByColumn)
{
    SimulatedPrinter printer(kTwoProfiles);
    ASSERT_EQ(walk(printer), kTwoProfilesWalked) << printer.log();
    EXPECT_EQ(ask("snmpget", printer, {"AGENT", kTable + ".7.1.1"}).out, kTable + ".7.1.1 = INTEGER: -7\n");
    for (const Lines& command :
         {Lines{"snmpget", ".1.1.3"}, {"snmpgetnext", ".7.1.2"}, {"snmpset", ".1.1.1", "i", "5"}}) {
        Lines more = {"AGENT", kTable + command[1]};
        more.insert(more.end(), command.begin() + 2, command.end());
        EXPECT_NE(ask(command[0], printer, more).err.find("noSuchName"), std::string::npos) << command[0];
    }
    printer.changeTable("profile 1 4 \"Name\" \"FILE.ICC\" 1\nprofile 2\n");
    EXPECT_NE(printer.log().find("table:2: the location is missing"), std::string::npos) << printer.log();
    EXPECT_EQ(walk(printer), kTwoProfilesWalked) << "a wrong table is not taken";
    printer.changeTable("");
    EXPECT_EQ(walk(printer), Lines());
}

TEST(SimulatedPrinter, AnswersOnlyReadersOfVersion1WhoKnowTheCommunity)
{
    SimulatedPrinter printer(kTwoProfiles);
    for (const Lines& who : {Lines{"-c", "public"}, {"-v", "2c"}, {"-c", "vislaq2"}}) {
        const ProcessResult result = ask("snmpget", printer, {who[0], who[1], "AGENT", kTable + ".1.1.1"});
        EXPECT_NE(result.err.find("Timeout"), std::string::npos) << who[1] << result.out << result.err;
    }
    SimulatedPrinter other(kTwoProfiles, {"--community", "other"});
    EXPECT_EQ(ask("snmpget", other, {"-c", "other", "AGENT", kTable + ".1.1.1"}).status, 0) << other.log();
}

TEST(SimulatedPrinter, SaysWhatItDoesNotTake)
{
    SimulatedPrinter printer(kTwoProfiles);
    Sandbox sandbox;
    const struct {
        const char* table;
        Lines options;
        const char* message;
    } cases[] = {
        {"\n# fine\nprofil 1",
         {},
         "/table:3: a line begins with \"profile\" or \"object\", not with \"profil\""},
        {"profile x", {}, "/table:1: the row is not a number in range: x"},
        {"profile 1 4 \"Name\" \"FILE", {}, "/table:1: the file name has no closing quote"},
        {"profile 1 4 \"N\" \"F\" 1\nprofile 1 4 \"N\" \"F\" 1", {}, "/table:2: row 1 is there already"},
        {"object 1.1.1", {}, "/table:1: an object has a name, the letter of a type and a value"},
        {"object 1.1.1 i five", {}, "/table:1: not a value of the type i: five"},
        {"", {"--port", std::to_string(printer.port())}, "Address already in use"},
        {"", {"--address", "192.0.2.1"}, "cannot listen at 192.0.2.1:"},
        {"", {"--fault", "error"}, "fault error: it takes a value"},
        {"", {"--fault", "twice:1"}, "fault twice: it takes no value"},
        {"", {"another table"}, "another table"},
    };
    for (const auto& c : cases) {
        Lines command = {PDE_BUILD_DIR "/printer/r4270-printer", "--exit-after", "5",
                         sandbox.write("table", c.table)};
        if (c.options.empty() || c.options[0] != "--port")
            command.insert(command.end(), {"--port", std::to_string(freePort())});
        command.insert(command.end(), c.options.begin(), c.options.end());
        const ProcessResult result = runProcess(command);
        EXPECT_NE(result.status, 0) << c.message;
        EXPECT_NE(result.err.find(c.message), std::string::npos) << c.message << "\n" << result.err;
    }
}

TEST(SimulatedPrinter, IsQuietAndLeavesTheSystemsSnmpFilesAlone)
{
    Sandbox sandbox;
    sandbox.write("snmp/snmp.conf", "mibs :\nsomething odd\n");
    std::filesystem::create_directory(sandbox / "state");
    ProcessOptions options;
    options.environment = {"SNMPCONFPATH=" + (sandbox / "snmp").string(),
                           "SNMP_PERSISTENT_DIR=" + (sandbox / "state").string()};
    const ProcessResult result =
        runProcess({PDE_BUILD_DIR "/printer/r4270-printer", "--port", std::to_string(freePort()),
                    "--exit-after", "1", PDE_SOURCE_DIR "/printer/profiles.sample"},
                   options);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out + result.err, "");
    EXPECT_TRUE(std::filesystem::is_empty(sandbox / "state"));
}
