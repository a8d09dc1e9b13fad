#pragma once

#include "profiles/HelperProtocol.h"
#include "profiles/ProfileListOperations.h"
#include "profiles/ProfileName.h"
#include "support/DriverRoot.h"
#include "support/SimulatedPrinter.h"

#include <gtest/gtest.h>
#include <map>

/// A scratch root with this build's helper and walker in it, and a simulated printer at the port that
/// net-snmp's configuration names.
class DiscoveryTest : public testing::Test {
protected:
    using Codes = std::map<std::string, int32_t>; ///< by file name

    /// Starts the printer with this table in place of any other. The time-out is for a busy machine.
    void startPrinter(const std::string& table, const std::vector<std::string>& options = {}, int timeout = 5)
    {
        printer_ = std::make_unique<SimulatedPrinter>(table, options);
        ASSERT_TRUE(printer_->running()) << printer_->log();
        configuration_.write("snmp.conf", "defaultPort " + std::to_string(printer_->port()) + "\ntimeout " +
                                              std::to_string(timeout) + "\nretries 0\n");
    }

    static std::vector<std::string> command(const std::string& host = "127.0.0.1")
    {
        std::vector<std::string> words = walkCommand(loginName(), host);
        words.insert(words.begin(), helperExecutable());
        return words;
    }

    /// Walks through the helper. Gives the exit value; -99 when there is more or less than the one line.
    static int walk()
    {
        ProcessResult result = runProcess(command());
        const int value = result.out.starts_with("mibwalk_XPC=iRet=") ? atoi(result.out.c_str() + 17) : -99;
        EXPECT_EQ(result.out, "mibwalk_XPC=iRet=" + std::to_string(value) + "\n") << result.err;
        EXPECT_EQ(result.status, value == 0 ? 0 : 1);
        return value;
    }

    static void store(const std::vector<ProfileRecord>& rgb, const std::vector<ProfileRecord>& sim = {},
                      const std::vector<ProfileRecord>& dst = {})
    {
        auto lists = std::make_unique<ProfileList[]>(kProfileListCount);
        for (auto [index, records] : {std::pair(kRgbList, &rgb), {kSimList, &sim}, {kDstList, &dst}}) {
            std::copy(records->begin(), records->end(), lists[index].records);
            lists[index].iNum = static_cast<int32_t>(records->size());
        }
        ASSERT_EQ(VelPListWriteProfile_All(&lists[kRgbList], &lists[kSimList], &lists[kDstList]), 0);
    }

    /// The codes of the list as it is stored now; the used slots are at its front.
    Codes codes(ProfileListIndex index)
    {
        EXPECT_EQ(VelPListReadProfile_All(&lists_[kRgbList], &lists_[kSimList], &lists_[kDstList]), 0);
        Codes result;
        for (int i = 0; i < lists_[index].iNum; ++i)
            result[std::string(nameText(lists_[index].records[i].FileName))] =
                lists_[index].records[i].InMenu;
        EXPECT_EQ(result.size(), static_cast<size_t>(lists_[index].iNum)) << "names come once";
        return result;
    }

    static ProfileRecord record(const std::string& fileName, int32_t inMenu, int32_t indexOnDevice = 7)
    {
        ProfileRecord made{indexOnDevice, inMenu, 2, {}, {}, kOnDisk, 0};
        setNameText(made.FileName, fileName);
        setNameText(made.ProfileName, "stored " + fileName);
        return made;
    }

    DriverRoot root_;
    Sandbox configuration_;
    ScopedVariable readsConfiguration_{"SNMPCONFPATH", configuration_.path()};
    std::unique_ptr<SimulatedPrinter> printer_;
    std::unique_ptr<ProfileList[]> lists_ = std::make_unique<ProfileList[]>(kProfileListCount);
};
