#include "helper/HelperTest.h"

#include "profiles/DriverPaths.h"
#include "profiles/HelperChannel.h"
#include "profiles/ProfileListFile.h"

#include <algorithm>
#include <sstream>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

bool isLock(const fs::path& path)
{
    std::string name = path.filename();
    return name.starts_with(".R4270-lock-") || name.starts_with(".R4270-walk-");
}

} // namespace

std::string listText(int tag)
{
    PropertyListDocument document;
    PropertyListNode top = document.root();
    for (const char* key : kListKeys) {
        PropertyListNode list = top.addDictionary(key);
        for (const char* field : kFieldKeys)
            list.addDictionary(field);
        list.addInteger(kCountKey, tag);
    }
    return document.text();
}

std::string treeOf(const fs::path& folder)
{
    Strings lines;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        struct stat found = {};
        EXPECT_EQ(lstat(entry.path().c_str(), &found), 0);
        std::ostringstream line;
        line << '\n' << entry.path() << ' ' << found.st_mode << ' ' << found.st_uid << ' ' << found.st_gid;
        if (!S_ISDIR(found.st_mode))
            line << ' ' << found.st_nlink << ' ' << found.st_size << ' ' << found.st_mtim.tv_sec << '.'
                 << found.st_mtim.tv_nsec;
        if (S_ISREG(found.st_mode))
            line << ' ' << readFile(entry.path());
        if (!isLock(entry.path()))
            lines.push_back(line.str());
    }
    std::sort(lines.begin(), lines.end());
    std::string all;
    for (const std::string& line : lines)
        all += line;
    return all;
}

HelperTest::HelperTest() : root(sandbox.path()), program(PDE_HELPER)
{
    umask(022);
    ScopedVariable variable("PDE_ROOT", root);
    folder = preferencesFolder();
    fs::create_directories(folder);
    current = currentListPath();
    previous = previousListPath();
    url = fileUrl(current);
}

ProcessResult HelperTest::run(const Strings& arguments, ProcessOptions options) const
{
    Strings all = {program};
    all.insert(all.end(), arguments.begin(), arguments.end());
    options.environment.push_back("PDE_ROOT=" + root.string());
    ProcessResult result = runProcess(all, options);
    EXPECT_LT(result.out.size() + result.err.size(), 4096U);
    return result;
}

bool HelperTest::confirms(const Strings& arguments) const
{
    ProcessResult result = run(arguments);
    bool said = result.out == arguments[0] + "=TRUE\n";
    EXPECT_EQ(said, result.status == 0) << result.out << result.err;
    return said;
}

std::string HelperTest::expectRefused(const Strings& arguments) const
{
    SCOPED_TRACE(::testing::PrintToString(arguments));
    std::string before = treeOf(root);
    ProcessResult result = run(arguments);
    EXPECT_EQ(result.out, arguments[0] + "=FALSE\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err, "");
    EXPECT_EQ(treeOf(root), before);
    return result.err;
}

Strings HelperTest::names() const
{
    Strings all;
    for (const auto& entry : fs::directory_iterator(folder))
        if (!isLock(entry.path()))
            all.push_back(entry.path().filename());
    std::sort(all.begin(), all.end());
    return all;
}
