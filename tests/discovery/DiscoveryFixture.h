#pragma once

#include "profiles/DriverPaths.h"
#include "profiles/ProfileListOperations.h"
#include "profiles/ProfileName.h"
#include "support/Process.h"
#include "support/Sandbox.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// A scratch root with this build's helper and walker in it, and net-snmp's configuration naming the port of
/// the printer.
class DiscoveryTest : public testing::Test {
protected:
    using Codes = std::map<std::string, int32_t>; ///< by file name

    DiscoveryTest()
    {
        std::filesystem::path helpers = helperFolder();
        root_ = std::make_unique<ScopedVariable>("PDE_ROOT", (sandbox_ / "root").string());
        std::filesystem::create_directories(helperFolder().parent_path());
        std::filesystem::create_directory_symlink(helpers, helperFolder());
        std::filesystem::create_directories(preferencesFolder());
        configuration_ = std::make_unique<ScopedVariable>("SNMPCONFPATH", (sandbox_ / "snmp").string());
        usePort(port_);
    }

    /// The time-out is in seconds, and for a busy machine.
    void usePort(int port, int timeout = 5) const
    {
        sandbox_.write("snmp/snmp.conf", "defaultPort " + std::to_string(port) + "\ntimeout " +
                                             std::to_string(timeout) + "\nretries 0\n");
    }

    /// Starts the simulated printer with this table in place of any other.
    void startPrinter(const std::string& table, const std::vector<std::string>& options = {})
    {
        printer_.reset();
        std::filesystem::remove(sandbox_ / "log");
        std::vector<std::string> command = {PDE_PRINTER, "--verbose", "--port", std::to_string(port_)};
        command.insert(command.end(), options.begin(), options.end());
        command.push_back(sandbox_.write("table", table));
        printer_ = std::make_unique<BackgroundProcess>(command, (sandbox_ / "log").string());
        ASSERT_TRUE(waitUntil([&] {
            return readFile(sandbox_ / "log").find("serving") != std::string::npos;
        })) << readFile(sandbox_ / "log");
    }

    static std::vector<std::string> walkCommand()
    {
        return {helperExecutable(),
                "mibwalk_XPC",
                "R4270",
                loginName(),
                "snmpwalk",
                "-Os",
                "-c",
                "vislaq",
                "-v",
                "1",
                "127.0.0.1",
                "1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1"};
    }

    /// Walks through the helper. Gives the exit value; -99 when there is more or less than the one line.
    static int walk()
    {
        ProcessResult result = runProcess(walkCommand());
        int value = 0;
        char end = 0;
        bool oneLine = sscanf(result.out.c_str(), "mibwalk_XPC=iRet=%d%c", &value, &end) == 2 &&
                       end == '\n' && result.out == "mibwalk_XPC=iRet=" + std::to_string(value) + "\n";
        EXPECT_TRUE(oneLine) << result.out << result.err;
        EXPECT_EQ(result.status, value == 0 ? 0 : 1);
        return oneLine ? value : -99;
    }

    void store(const std::vector<ProfileRecord>& rgb, const std::vector<ProfileRecord>& sim = {},
               const std::vector<ProfileRecord>& dst = {})
    {
        const std::vector<ProfileRecord>* records[] = {&rgb, &sim, &dst};
        auto lists = std::make_unique<ProfileList[]>(kProfileListCount);
        for (int i = 0; i < kProfileListCount; ++i) {
            std::copy(records[i]->begin(), records[i]->end(), lists[i].records);
            lists[i].iNum = static_cast<int32_t>(records[i]->size());
        }
        ASSERT_EQ(VelPListWriteProfile_All(&lists[kRgbList], &lists[kSimList], &lists[kDstList]), 0);
    }

    /// What is stored now.
    void load()
    {
        lists_ = std::make_unique<ProfileList[]>(kProfileListCount);
        ASSERT_EQ(VelPListReadProfile_All(&lists_[kRgbList], &lists_[kSimList], &lists_[kDstList]), 0);
    }

    /// The codes of the stored list; the used slots are at its front.
    Codes codes(ProfileListIndex index)
    {
        load();
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

    static std::filesystem::path helperFolder()
    {
        return std::filesystem::path(helperExecutable()).parent_path().parent_path().parent_path();
    }

    Sandbox sandbox_;
    int port_ = freePort();
    std::unique_ptr<ScopedVariable> root_, configuration_;
    std::unique_ptr<BackgroundProcess> printer_;
    std::unique_ptr<ProfileList[]> lists_;
};
