#include "discovery/PDECommon+Discovery.h"

#include "PrinterSession.h"
#include "profiles/DriverPaths.h"
#include "support/PrivateAvahi.h"
#include "support/SimulatedPrinter.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

/// In place of the helper, a script that keeps the commands it gets: what is looked at here is what it is
/// asked.
class AddressTest : public testing::Test {
protected:
    void SetUp() override { answer("mibwalk_XPC=iRet=0"); }

    /// What the walk is answered with; every other command is answered with yes.
    void answer(const std::string& reply)
    {
        const std::filesystem::path helper = helperExecutable();
        sandbox_.write(std::filesystem::relative(helper, sandbox_.path()),
                       "#!/bin/sh\n"
                       "for word; do printf '%s|' \"$word\"; done >>\"$0.log\"\n"
                       "echo >>\"$0.log\"\n"
                       "[ $1 = mibwalk_XPC ] && printf '" +
                           reply + "' || echo $1=TRUE\n");
        std::filesystem::permissions(helper, std::filesystem::perms::owner_all);
    }

    /// The address that the walk is given for a device URI; "" when none is asked for.
    std::string agentFor(const char* uri)
    {
        @autoreleasepool {
            const std::string log = helperExecutable() + ".log";
            std::filesystem::remove(log);
            EXPECT_EQ([PDECommon commonGetProfilesFromMIB:PrinterSession(uri).handle()], 0);
            std::string asked = readFile(log);
            const size_t swap = asked.find("velPListSwapProfile_XPC|2|");
            EXPECT_NE(swap, asked.npos) << asked;
            asked.erase(0, asked.find('\n', swap) + 1);
            const std::string before = "mibwalk_XPC|R4270|" + loginName() + "|snmpwalk|-Os|-c|vislaq|-v|1|";
            const std::string after = "|1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1|\n";
            if (asked.empty())
                return "";
            EXPECT_TRUE(asked.starts_with(before) && asked.ends_with(after)) << asked;
            return asked.substr(before.size(), asked.size() - before.size() - after.size());
        }
    }

    Sandbox sandbox_;
    ScopedVariable root_{"PDE_ROOT", sandbox_.path()};
};

} // namespace

TEST_F(AddressTest, ProtocolComesFromTheSchemeAtTheVeryStart)
{
    const struct {
        const char* uri;
        int code;
    } cases[] = {
        {"mdns://Office._pdl-datastream._tcp.local.", 1},
        {"dnssd://Office%20Printer._pdl-datastream._tcp.local./?uuid=1", 1},
        {"lpd://192.168.1.20:515/queue", 0},
        {"lpd://", 0},
        {"pap://zone/printer", 2},
        {"usb://QUORVEX/R4270?serial=1", 3},
        {"USB://QUORVEX/R4270", -1},
        {"Lpd://192.168.1.20/", -1},
        {"ipp://host/lpd://other", -1},
        {"socket://192.168.1.20", -1},
        {"lpd:/host", -1},
        {" lpd://host", -1},
        {"lpd", -1},
        {"", -1},
        {nullptr, -1},
    };
    @autoreleasepool {
        for (const auto& c : cases) {
            const char* shown = c.uri != nullptr ? c.uri : "(none)";
            EXPECT_EQ([PDECommon commoniGetProtocolByUrl:stringOf(c.uri)], c.code) << shown;
            EXPECT_EQ([PDECommon commoniGetProtocol:PrinterSession(c.uri).handle()], c.code) << shown;
        }
        PMSessionObject* bare = [[[PMSessionObject alloc] initWithPrinter:nil] autorelease];
        EXPECT_EQ([PDECommon commoniGetProtocol:[bare handle]], -1);
        EXPECT_EQ([PDECommon commoniGetProtocol:nullptr], -1);
    }
}

TEST_F(AddressTest, AnLpdPrinterIsWalkedAtItsHostWithoutThePort)
{
    EXPECT_EQ(agentFor("lpd://192.168.1.20:515/queue"), "192.168.1.20");
    EXPECT_EQ(agentFor("lpd://Printer-1.Example"), "Printer-1.Example");
    EXPECT_EQ(agentFor("lpd://host/queue?reserve=none"), "host");
    const std::string name(253, 'h');
    EXPECT_EQ(agentFor(("lpd://" + name + ":/q").c_str()), name);
}

TEST_F(AddressTest, WithoutAnAddressNothingIsWalked)
{
    for (const char* uri :
         {"ipp://192.168.1.20/ipp/print", "socket://192.168.1.20", "usb://QUORVEX/R4270",
          "USB://QUORVEX/R4270", "pap://zone/printer", "LPD://host/q", "lpd://", "lpd:///queue",
          "lpd://:515/queue", "lpd:host", "lpd://two words/", "dnssd://", "dnssd://Office", "dnssd://a.b.c",
          "mdns://%zz._x._tcp.local", "garbage", "", (const char*)nullptr})
        EXPECT_EQ(agentFor(uri), "") << (uri != nullptr ? uri : "(none)");
    const std::string tooLong = "lpd://" + std::string(255, 'h') + "/q";
    EXPECT_EQ(agentFor(tooLong.c_str()), "");
    @autoreleasepool {
        EXPECT_EQ([PDECommon commonGetProfilesFromMIB:nullptr], 0);
    }
}

TEST_F(AddressTest, ABonjourPrinterIsWalkedAtTheAddressThatItsNameHas)
{
    PrivateAvahi avahi;
    if (!avahi.problem().empty())
        GTEST_SKIP() << avahi.problem();
    SimulatedPrinter office("", {"--publish", "Office Printer"});
    SimulatedPrinter odd("", {"--publish", "100% Büro v2.5"});
    ASSERT_TRUE(office.says("announced as")) << office.log();
    ASSERT_TRUE(odd.says("announced as")) << odd.log();
    EXPECT_EQ(agentFor("dnssd://Office%20Printer._pdl-datastream._tcp.local."), "127.0.0.1");
    EXPECT_EQ(agentFor("mdns://Office%20Printer._pdl-datastream._tcp.local./?uuid=1"), "127.0.0.1");
    EXPECT_EQ(agentFor("dnssd://100%25%20B%C3%BCro%20v2%2E5._pdl-datastream._tcp.local/"), "127.0.0.1");
    EXPECT_EQ(agentFor("dnssd://Nobody._pdl-datastream._tcp.local./"), "");
}

TEST_F(AddressTest, WhatTheHelperSaysOfTheWalkDoesNotMatter)
{
    for (const char* reply : {"mibwalk_XPC=iRet=2", "mibwalk_XPC=iRet=", "noise", "", "\\377"}) {
        answer(reply);
        EXPECT_EQ(agentFor("lpd://host/q"), "host") << reply;
    }
    std::filesystem::remove(helperExecutable());
    @autoreleasepool {
        EXPECT_EQ([PDECommon commonGetProfilesFromMIB:PrinterSession("lpd://host/q").handle()], 0);
    }
}
