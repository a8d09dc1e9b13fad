#include "profiles/HelperChannel.h"
#include "profiles/ProfileListFile.h"
#include "profiles/ProfileListOperations.h"
#include "profiles/ProfileName.h"
#include "support/DriverRoot.h"
#include "support/Process.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <memory>
#include <pugixml.hpp>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef PDE_HAVE_LIBPLIST
#include <plist/plist.h>
#endif

// Every figure of the profile store next to the one it is measured against, in one run. Three lists of 500
// profiles each where no other number is given.

namespace {

std::unique_ptr<ProfileList[]> listsOf(int count)
{
    auto lists = std::make_unique<ProfileList[]>(kProfileListCount);
    for (int index = 0; index < kProfileListCount; ++index) {
        for (int slot = 0; slot < count; ++slot) {
            ProfileRecord& record = lists[index].records[slot];
            record = {kProfileSlots + slot, kByHandListed, 2, {}, {}, kOnDisk, 3};
            setNameText(record.FileName, "profile-" + std::to_string(slot) + ".icc");
            setNameText(record.ProfileName, "Office Proof Coated " + std::to_string(slot));
        }
        lists[index].iNum = count;
    }
    return lists;
}

std::string textOf(const ProfileList* lists)
{
    return listFileText(lists[kRgbList], lists[kSimList], lists[kDstList]);
}

const std::string& fullText()
{
    static const std::string text = textOf(listsOf(kProfileSlots).get());
    return text;
}

void runTrue()
{
    char program[] = "/bin/true";
    char* arguments[] = {program, nullptr};
    char* environment[] = {nullptr};
    pid_t child = -1;
    if (posix_spawn(&child, program, nullptr, nullptr, arguments, environment) == 0)
        waitpid(child, nullptr, 0);
}

void readBareXml(benchmark::State& state)
{
    for (auto _ : state) {
        pugi::xml_document document;
        benchmark::DoNotOptimize(document.load_buffer(fullText().data(), fullText().size()));
    }
}
BENCHMARK(readBareXml)->Unit(benchmark::kMicrosecond);

void writeBareXml(benchmark::State& state)
{
    struct Text : pugi::xml_writer {
        void write(const void* data, size_t size) override
        {
            text.append(static_cast<const char*>(data), size);
        }
        std::string text;
    };
    pugi::xml_document document;
    document.load_buffer(fullText().data(), fullText().size());
    for (auto _ : state) {
        Text text;
        document.save(text);
        benchmark::DoNotOptimize(text.text.data());
    }
}
BENCHMARK(writeBareXml)->Unit(benchmark::kMicrosecond);

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

void writeWithLibplist(benchmark::State& state)
{
    plist_t list = nullptr;
    plist_from_xml(fullText().data(), static_cast<uint32_t>(fullText().size()), &list);
    for (auto _ : state) {
        char* text = nullptr;
        uint32_t length = 0;
        plist_to_xml(list, &text, &length);
        free(text);
    }
    plist_free(list);
}
BENCHMARK(writeWithLibplist)->Unit(benchmark::kMicrosecond);
#endif

/// Python's plistlib, which takes its own time: that of starting Python is none of it.
void usePython(benchmark::State& state, const std::string& statement)
{
    const std::string program = "import plistlib, sys, time\n"
                                "text = sys.stdin.buffer.read()\n"
                                "value = plistlib.loads(text)\n"
                                "start = time.perf_counter()\n" +
                                statement + "\nprint(time.perf_counter() - start)\n";
    ProcessOptions options;
    options.input = fullText();
    for (auto _ : state)
        state.SetIterationTime(atof(runProcess({"python3", "-c", program}, options).out.c_str()));
}
BENCHMARK_CAPTURE(usePython, read, "plistlib.loads(text)")->Unit(benchmark::kMicrosecond)->UseManualTime();
BENCHMARK_CAPTURE(usePython, write, "plistlib.dumps(value)")->Unit(benchmark::kMicrosecond)->UseManualTime();

void readThreeLists(benchmark::State& state, bool newFile)
{
    DriverRoot root;
    const std::string text = textOf(listsOf(static_cast<int>(state.range(0))).get());
    auto lists = std::make_unique<ProfileList[]>(kProfileListCount);
    auto write = [&text] {
        std::filesystem::remove(currentListPath());
        std::ofstream(currentListPath()) << text;
    };
    write();
    usleep(20000); // a file that has just changed is not remembered yet
    for (auto _ : state) {
        if (newFile) {
            state.PauseTiming();
            write();
            state.ResumeTiming();
        }
        if (VelPListReadProfile_All(&lists[kRgbList], &lists[kSimList], &lists[kDstList]) != 0)
            state.SkipWithError("the list file cannot be read");
    }
}

void everySize(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Unit(benchmark::kMicrosecond)->Arg(0)->Arg(50)->Arg(kProfileSlots);
}
BENCHMARK_CAPTURE(readThreeLists, ofANewFile, true)->Apply(everySize);
BENCHMARK_CAPTURE(readThreeLists, ofAnUnchangedFile, false)->Apply(everySize);

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
BENCHMARK(spawnTrueAndWriteTheSameBytes)->Unit(benchmark::kMicrosecond)->UseRealTime();

void saveThreeLists(benchmark::State& state)
{
    DriverRoot root;
    auto lists = listsOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        if (VelPListWriteProfile_All(&lists[kRgbList], &lists[kSimList], &lists[kDstList]) != 0)
            state.SkipWithError("the helper did not write the lists");
    }
}
BENCHMARK(saveThreeLists)->Apply(everySize)->UseRealTime();

void makeTheTextOfThreeLists(benchmark::State& state)
{
    auto lists = listsOf(kProfileSlots);
    for (auto _ : state)
        benchmark::DoNotOptimize(textOf(lists.get()));
}
BENCHMARK(makeTheTextOfThreeLists)->Unit(benchmark::kMicrosecond);

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
