// What the walks of the printer's table do not show: what net-snmp's own commands get, and that its PPD keeps
// to the format.
#include "support/SimulatedPrinter.h"

#include <cups/ppd.h>
#include <gtest/gtest.h>

namespace {

using Words = std::vector<std::string>;
const std::string kTable = ".1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1";

/// All that a command says when it asks as the panel would; `options` can say otherwise. Nothing of this
/// machine's configuration has a say.
std::string ask(const SimulatedPrinter& printer, const std::string& command, const std::string& object,
                const std::string& options = "")
{
    const std::string line = command + " -Oqv -t 0.5 -r 0 -v 1 -c vislaq " + options + " " +
                             printer.address() + " " + kTable + object;
    const std::string nowhere = "/dev/null/none";
    const Words environment = {"MIBS=", "SNMPCONFPATH=" + nowhere, "SNMP_PERSISTENT_DIR=" + nowhere};
    const ProcessResult result = runProcess({"sh", "-c", line}, {.environment = environment});
    return result.out + result.err;
}

const char* const kTwoProfiles = "# Two of them.\n"
                                 "profile 2 5 \"Coated \\\"A\\\" #1\" \"C#1.ICC\" 3  # the second row first\n"
                                 "profile 1 4 \"Büro\" \"OFFICE.ICC\" 1 9 -7\n";
const char* const kTwoProfilesWalked = "1\n2\n4\n5\n\"42 C3 BC 72 6F \"\n\"Coated \\\"A\\\" #1\"\n"
                                       "\"OFFICE.ICC\"\n\"C#1.ICC\"\n1\n3\n9\n0\n-7\n0\nEnd of MIB\n";

} // namespace

TEST(SimulatedPrinter, ServesTheProfilesOfItsFileColumnByColumn)
{
    SimulatedPrinter printer(kTwoProfiles), other("", {"--community", "other"});
    EXPECT_EQ(ask(printer, "snmpwalk", ""), kTwoProfilesWalked) << printer.log();
    EXPECT_EQ(ask(other, "snmpwalk", "", "-c other"), "End of MIB\n");
    const char* const cases[][4] = {
        {"snmpget", ".7.1.1", "", "-7\n"},           {"snmpget", ".1.1.3", "", "noSuchName"},
        {"snmpgetnext", ".7.1.2", "", "noSuchName"}, {"snmpset", ".1.1.1 i 5", "", "noSuchName"},
        {"snmpget", ".1.1.1", "-v 2c", "Timeout"},   {"snmpget", ".1.1.1", "-c vislaQ", "Timeout"},
    };
    for (auto [command, object, options, answer] : cases)
        EXPECT_NE(ask(printer, command, object, options).find(answer), std::string::npos) << answer;
    printer.changeTable("profile 1 4 \"Name\" \"FILE.ICC\" 1\nprofile 2\n");
    EXPECT_NE(printer.log().find("table:2: the location is missing"), std::string::npos) << printer.log();
    EXPECT_EQ(ask(printer, "snmpwalk", ""), kTwoProfilesWalked) << "a wrong table is not taken";
    printer.changeTable("");
    EXPECT_EQ(ask(printer, "snmpwalk", ""), "End of MIB\n");
}

TEST(SamplePpd, KeepsToTheFormatInAllItsLanguagesAndConflictsOnlyWhereTheUserMakesIt)
{
    const char* const file = PDE_SOURCE_DIR "/printer/R4270.ppd";
    // The tool also looks for every text in every language of the file.
    const ProcessResult result = runProcess({"cupstestppd", "-v", file});
    EXPECT_TRUE(result.status == 0 && result.out.find("WARN") == std::string::npos) << result.out;
    ppd_file_t* ppd = ppdOpenFile(file);
    ppdMarkDefaults(ppd);
    EXPECT_EQ(ppdMarkOption(ppd, "VelSimSource", "SWOP"), 0);
    EXPECT_GT(ppdMarkOption(ppd, "VelColorAsGray", "True"), 0);
    ppdClose(ppd);
}
