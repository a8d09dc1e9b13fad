#include "Commands.h"
#include "Fuzz.h"
#include "Process.h"
#include "profiles/DriverPaths.h"
#include "profiles/HelperChannel.h"
#include "profiles/ProfileListFile.h"
#include "support/Sandbox.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <sys/prctl.h>
#include <unistd.h>

// Whatever the helper is told, in whatever order: what stands in the list's place afterwards is a profile
// list, and what belongs to others is as it was. An input is a command a line, its arguments parted by tabs;
// "@C", "@P", "@U" and "@L" stand for the path of the list, that of its copy, the list's URL and the login.

namespace {

void run(const std::string& line)
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
    arguments.push_back(nullptr);
    int status = runHelper(static_cast<int>(words.size()), arguments.data());
    std::string_view name = words.size() > 1 ? arguments[1] : "";
    bool known = std::any_of(commands().begin(), commands().end(),
                             [name](const Command& command) { return command.name == name; });
    bool asks = words.size() == 2 && (name == "--help" || name == "--version");
    require(known ? status == 0 || status == 1 : status == (asks ? 0 : 2));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    static Sandbox sandbox;
    static ScopedVariable root("PDE_ROOT", sandbox.path());
    std::filesystem::create_directories(preferencesFolder());
    require(settleProcess());
    // The fuzzer has a time limit of its own, and looks for leaks in a process that it traces.
    alarm(0);
    prctl(PR_SET_DUMPABLE, 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::filesystem::path folder = preferencesFolder();
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        std::filesystem::remove_all(entry.path());
    const std::filesystem::path foreign = folder / "another.plist";
    std::ofstream(foreign) << "another's";
    std::istringstream in(textOf(data, size));
    for (std::string line; std::getline(in, line);) {
        run(line);
        std::string list = readFile(currentListPath());
        require(list.empty() ? !std::filesystem::exists(currentListPath()) : isListFileText(list));
    }
    require(readFile(foreign) == "another's");
    return 0;
}
