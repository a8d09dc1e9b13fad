#pragma once

#include "discovery/ProfileTableWalk.h"
#include "discovery/SpoolTable.h"
#include "support/Sandbox.h"
#include "support/SnmpAgent.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

inline constexpr char kProfileTable[] = "1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1";

/// Walks in this process. There is no helper below the scratch root: the merge at the end writes nothing.
class WalkTest : public testing::Test {
protected:
    /// The walk's arguments, then `options`, the agent and the root. The time-out is for a busy machine.
    static std::vector<std::string> arguments(const std::string& agent,
                                              const std::vector<std::string>& options,
                                              const std::string& root = kProfileTable)
    {
        std::vector<std::string> words = {"snmpwalk", "-Os", "-c", "vislaq", "-v", "1", "-t", "5", "-r", "0"};
        words.insert(words.end(), options.begin(), options.end());
        words.insert(words.end(), {agent, root});
        return words;
    }

    static int walk(std::vector<std::string> words)
    {
        std::vector<char*> argv;
        for (std::string& word : words)
            argv.push_back(word.data());
        argv.push_back(nullptr);
        return mib_walk(static_cast<int>(words.size()), argv.data());
    }

    static int walk(const SnmpAgent& agent, const std::vector<std::string>& options = {})
    {
        return walk(arguments(agent.address(), options));
    }

    /// Walks an agent that answers every request by `script`.
    static int walk(const SnmpAgent::Script& script, const std::vector<std::string>& options = {})
    {
        return walk(SnmpAgent(script), options);
    }

    static SnmpTable tableOf(uint32_t rows)
    {
        SnmpTable table;
        for (uint32_t row = 1; row <= rows; ++row)
            addProfileRow(table, row, "FILE" + std::to_string(row) + ".ICC", 1, kOnDisk);
        return table;
    }

    static const ProfileRecord& spooled(int row) { return PlistForSpool.records[row - 1]; }

    Sandbox sandbox_;
    ScopedVariable root_{"PDE_ROOT", sandbox_.path()};
};
