#include "profiles/DriverPaths.h"
#include "profiles/HelperChannel.h"
#include "profiles/ProfileListFile.h"
#include "profiles/ProfileListOperations.h"
#include "profiles/ProfileName.h"
#include "support/Sandbox.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <pugixml.hpp>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef PDE_HAVE_LIBPLIST
#include <plist/plist.h>
#endif

// Every figure of the profile store next to the one it is measured against, in one run. Three lists of 500
// profiles each throughout.

namespace {

std::unique_ptr<ProfileList[]> fullLists()
{
    auto lists = std::make_unique<ProfileList[]>(kProfileListCount);
    for (int index = 0; index < kProfileListCount; ++index) {
        for (int slot = 0; slot < kProfileSlots; ++slot) {
            ProfileRecord& record = lists[index].records[slot];
            record = {kProfileSlots + slot, kByHandListed, 2, {}, {}, kOnDisk, 3};
            setNameText(record.FileName, "profile-" + std::to_string(slot) + ".icc");
            setNameText(record.ProfileName, "Office Proof Coated " + std::to_string(slot));
        }
        lists[index].iNum = kProfileSlots;
    }
    return lists;
}

const std::string& fullText()
{
    static const std::string text = [] {
        auto lists = fullLists();
        return listFileText(lists[kRgbList], lists[kSimList], lists[kDstList]);
    }();
    return text;
}

/// The current list in a scratch root, with the helper of this build where it belongs.
class DriverRoot {
public:
    DriverRoot() : helper_(helperExecutable()), variable_("PDE_ROOT", sandbox_.path().string())
    {
        std::filesystem::create_directories(preferencesFolder());
        std::filesystem::path program = helperExecutable();
        std::filesystem::create_directories(program.parent_path());
        if (std::filesystem::exists(helper_))
            std::filesystem::copy_file(helper_, program);
        writeList();
    }

    void writeList() const
    {
        std::filesystem::path path = currentListPath();
        std::filesystem::remove(path);
        sandbox_.write(path.lexically_relative(sandbox_.path()), fullText());
    }

private:
    Sandbox sandbox_;
    std::string helper_;
    ScopedVariable variable_;
};

void runTrue()
{
    char program[] = "/bin/true";
    char* arguments[] = {program, nullptr};
    char* environment[] = {nullptr};
    pid_t child = -1;
    if (posix_spawn(&child, program, nullptr, nullptr, arguments, environment) == 0)
        waitpid(child, nullptr, 0);
}

void readAllLists(benchmark::State& state, ProfileList* lists)
{
    if (VelPListReadProfile_All(&lists[kRgbList], &lists[kSimList], &lists[kDstList]) != 0)
        state.SkipWithError("the list file cannot be read");
}

void readBareXml(benchmark::State& state)
{
    for (auto _ : state) {
        pugi::xml_document document;
        benchmark::DoNotOptimize(document.load_buffer(fullText().data(), fullText().size()));
    }
}
BENCHMARK(readBareXml)->Unit(benchmark::kMicrosecond);

#ifdef PDE_HAVE_LIBPLIST
void readWithLibplist(benchmark::State& state)
{
    for (auto _ : state) {
        plist_t list = nullptr;
        plist_from_xml(fullText().data(), static_cast<uint32_t>(fullText().size()), &list);
        plist_free(list);
    }
}
BENCHMARK(readWithLibplist)->Unit(benchmark::kMicrosecond);
#endif

void readThreeListsOfANewFile(benchmark::State& state)
{
    DriverRoot root;
    auto lists = std::make_unique<ProfileList[]>(kProfileListCount);
    for (auto _ : state) {
        state.PauseTiming();
        root.writeList();
        state.ResumeTiming();
        readAllLists(state, lists.get());
    }
}
BENCHMARK(readThreeListsOfANewFile)->Unit(benchmark::kMicrosecond);

void readThreeListsOfAnUnchangedFile(benchmark::State& state)
{
    DriverRoot root;
    auto lists = std::make_unique<ProfileList[]>(kProfileListCount);
    usleep(20000); // a file that has just changed is not remembered yet
    for (auto _ : state)
        readAllLists(state, lists.get());
}
BENCHMARK(readThreeListsOfAnUnchangedFile)->Unit(benchmark::kMicrosecond);

/// What a save cannot do without: the same number of processes, and the same bytes made durable.
void spawnTrueAndWriteTheSameBytes(benchmark::State& state)
{
    Sandbox sandbox;
    constexpr size_t kPermissionAndRename = 2;
    size_t processes = listFilePieces(fullText()).size() + kPermissionAndRename;
    for (auto _ : state) {
        for (size_t i = 0; i < processes; ++i)
            runTrue();
        int file = open((sandbox / "bytes").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        benchmark::DoNotOptimize(write(file, fullText().data(), fullText().size()));
        fsync(file);
        close(file);
    }
    state.counters["processes"] = static_cast<double>(processes);
}
BENCHMARK(spawnTrueAndWriteTheSameBytes)->Unit(benchmark::kMillisecond)->UseRealTime();

void saveThreeLists(benchmark::State& state)
{
    DriverRoot root;
    auto lists = fullLists();
    for (auto _ : state) {
        if (VelPListWriteProfile_All(&lists[kRgbList], &lists[kSimList], &lists[kDstList]) != 0)
            state.SkipWithError("the helper did not write the lists");
    }
}
BENCHMARK(saveThreeLists)->Unit(benchmark::kMillisecond)->UseRealTime();

void makeTheTextOfThreeLists(benchmark::State& state)
{
    auto lists = fullLists();
    for (auto _ : state)
        benchmark::DoNotOptimize(listFileText(lists[kRgbList], lists[kSimList], lists[kDstList]));
}
BENCHMARK(makeTheTextOfThreeLists)->Unit(benchmark::kMillisecond);

void startAndEndTrue(benchmark::State& state)
{
    for (auto _ : state)
        runTrue();
}
BENCHMARK(startAndEndTrue)->Unit(benchmark::kMicrosecond)->UseRealTime();

void askForPermission(benchmark::State& state)
{
    DriverRoot root;
    for (auto _ : state) {
        if (VelPListIsAdminProfile() != 1)
            state.SkipWithError("the helper did not confirm the permission");
    }
}
BENCHMARK(askForPermission)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace
