#include "Commands.h"
#include "Process.h"
#include "profiles/DriverPaths.h"
#include "profiles/HelperChannel.h"
#include "profiles/ProfileListFile.h"
#include "support/Sandbox.h"

#include <cassert>
#include <fstream>
#include <map>
#include <sstream>
#include <unistd.h>

// Whatever the helper is told, in whatever order: what stands in the list's place afterwards is a profile
// list, and what belongs to others is as it was. An input is a command a line, its arguments parted by tabs;
// some stand for what only the running program knows.

static std::map<std::string, std::string> known;

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    static Sandbox sandbox;
    setenv("PDE_ROOT", sandbox.path().c_str(), 1);
    std::filesystem::create_directories(preferencesFolder());
    known = {{"@C", currentListPath()},
             {"@P", previousListPath()},
             {"@U", fileUrl(currentListPath())},
             {"@L", loginName()}};
    if (!settleProcess())
        abort();
    alarm(0); // the fuzzer has a time limit of its own
    return 0;
}

static void run(const std::string& line)
{
    std::vector<std::string> words = {"R4270Helper"};
    std::istringstream in(line);
    for (std::string word; std::getline(in, word, '\t');)
        words.push_back(known.contains(word) ? known[word] : word);
    std::vector<const char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(word.c_str());
    runHelper(static_cast<int>(words.size()), arguments.data());
}

extern "C" int LLVMFuzzerTestOneInput(const char* data, size_t size)
{
    const std::filesystem::path list = known["@C"], foreign = list.parent_path() / "another.plist";
    for (const auto& entry : std::filesystem::directory_iterator(list.parent_path()))
        std::filesystem::remove_all(entry.path());
    std::ofstream(foreign) << "another's";
    std::istringstream in(std::string(data, size));
    for (std::string line; std::getline(in, line);) {
        run(line);
        assert(!std::filesystem::exists(list) || isListFileText(readFile(list)));
        assert(readFile(foreign) == "another's");
    }
    return 0;
}
