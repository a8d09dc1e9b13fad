#include "Commands.h"
#include "Process.h"
#include "profiles/DriverPaths.h"
#include "profiles/HelperChannel.h"
#include "profiles/ProfileListFile.h"
#include "support/Sandbox.h"

#include <algorithm>
#include <cassert>
#include <fstream>
#include <sstream>
#include <sys/prctl.h>
#include <unistd.h>

// Whatever the helper is told, in whatever order: what stands in the list's place afterwards is a profile
// list, and what belongs to others is as it was. An input is a command a line, its arguments parted by tabs;
// "@C", "@P", "@U" and "@L" stand for the path of the list, that of its copy, the list's URL and the login.

static void run(const std::string& line)
{
    std::vector<std::string> words = {"R4270Helper"};
    std::istringstream in(line);
    for (std::string word; std::getline(in, word, '\t');)
        words.push_back(word == "@C"   ? currentListPath()
                        : word == "@P" ? previousListPath()
                        : word == "@U" ? fileUrl(currentListPath())
                        : word == "@L" ? loginName()
                                       : word);
    std::vector<const char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(word.c_str());
    int status = runHelper(static_cast<int>(words.size()), arguments.data());
    assert(status >= 0 && status <= 2);
}

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    static Sandbox sandbox;
    setenv("PDE_ROOT", sandbox.path().c_str(), 1);
    std::filesystem::create_directories(preferencesFolder());
    bool settled = settleProcess();
    assert(settled);
    // The fuzzer has a time limit of its own, and looks for leaks in a process that it traces.
    alarm(0);
    return prctl(PR_SET_DUMPABLE, 1);
}

extern "C" int LLVMFuzzerTestOneInput(const char* data, size_t size)
{
    const std::filesystem::path folder = preferencesFolder(), foreign = folder / "another.plist";
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        std::filesystem::remove_all(entry.path());
    std::ofstream(foreign) << "another's";
    std::istringstream in(std::string(data, size));
    for (std::string line; std::getline(in, line);) {
        run(line);
        assert(!std::filesystem::exists(currentListPath()) || isListFileText(readFile(currentListPath())));
        assert(readFile(foreign) == "another's");
    }
    return 0;
}
