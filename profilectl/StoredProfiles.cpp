#include "StoredProfiles.h"

#include "CommandError.h"

#include "profiles/DriverPaths.h"
#include "profiles/HelperChannel.h"
#include "profiles/ProfileEdits.h"
#include "profiles/ProfileListFile.h"
#include "profiles/ProfileListOperations.h"
#include "profiles/ProfileName.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <utf8.h>

namespace {

constexpr std::pair<int32_t, const char*> kStatusNames[] = {
    {kGoneHidden, "not-found"}, {kFoundHidden, "on-printer"}, {kByHandHidden, "by-hand"}};

bool isUnprintable(uint32_t c)
{
    bool control = c < 0x20 || (c >= 0x7F && c < 0xA0);
    bool direction =
        (c >= 0x200E && c <= 0x200F) || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
    return control || direction;
}

void requireWhole(const std::string& name, const char* what)
{
    if (name.size() > kLongestName)
        throw CommandError(kBadInput, std::string(what) + " \"" + name + "\" has " +
                                          std::to_string(name.size()) + " bytes in UTF-8; " +
                                          std::to_string(kLongestName) + " is the most that is kept");
    if (printable(name) != name)
        throw CommandError(kBadInput,
                           std::string(what) + " \"" + name + "\" holds characters that cannot be shown");
}

void requireReadable(int32_t readResult)
{
    std::string text;
    if (readResult != 0 && readListFile(currentListPath(), text) != FileProblem::kMissing)
        throw CommandError(kFaultFound, "the profile lists cannot be read; \"profilectl check\" says why");
}

} // namespace

std::unique_ptr<ProfileLists> loadLists()
{
    auto lists = std::make_unique<ProfileLists>();
    requireReadable(VelPListReadProfile_All(&(*lists)[kRgbList], &(*lists)[kSimList], &(*lists)[kDstList]));
    return lists;
}

void changeLists(const std::function<bool(ProfileLists&)>& change, bool mayBeDamaged)
{
    int32_t result = updateLists([&](ProfileLists& lists, int32_t readResult) {
        if (!mayBeDamaged)
            requireReadable(readResult);
        return change(lists);
    });
    if (result == 0)
        return;
    requirePermission();
    throw CommandError(kNotWritten, "the profile lists could not be written; they are as they were");
}

void requirePermission()
{
    std::string helper = helperExecutable(), fault;
    struct statvfs volume {};
    struct stat file {};
    std::optional<std::string> version = helperReply({"--version"});
    if (stat(helper.c_str(), &file) != 0)
        fault = "is not installed";
    else if (access(helper.c_str(), X_OK) != 0 || !S_ISREG(file.st_mode))
        fault = "cannot be executed";
    else if (!version || !version->starts_with("R4270Helper "))
        fault = "is damaged: it does not run";
    else if (statvfs(helper.c_str(), &volume) == 0 && (volume.f_flag & ST_NOSUID) != 0 &&
             (file.st_mode & S_ISUID) != 0 && file.st_uid != getuid())
        fault = "has no rights: its file system is mounted \"nosuid\"";
    if (!fault.empty())
        throw CommandError(kNoPermission, "the driver's helper " + fault + ": " + helper);
    if (VelPListIsAdminProfile() == 0)
        throw CommandError(kNoPermission,
                           "you may not change the profile lists: that is for members of the group "
                           "\"" PDE_ADMIN_GROUP "\"");
}

const char* statusName(ProfileRecord record)
{
    setListed(record, false);
    for (auto [hidden, name] : kStatusNames)
        if (hidden == record.InMenu)
            return name;
    return "unknown";
}

bool setStatus(ProfileRecord& record, std::string_view statusName)
{
    bool listed = isListed(record);
    for (auto [hidden, name] : kStatusNames) {
        if (name != statusName)
            continue;
        record.InMenu = hidden;
        setListed(record, listed);
        return true;
    }
    return false;
}

std::string locationName(int32_t location)
{
    return location == kOnDisk ? "disk" : location == kOnCard ? "card" : std::to_string(location);
}

ProfileRecord makeRecord(const std::string& fileName, const std::string& profileName, int32_t location,
                         bool listed)
{
    if (fileName.find('/') != std::string::npos)
        throw CommandError(kBadInput,
                           "\"" + fileName + "\" is a path; give the name that the file has on the printer");
    requireWhole(fileName, "the file name");
    if (!bJudgement8point3Format(fileName.c_str()))
        throw CommandError(kBadInput,
                           "\"" + fileName + "\" is no profile file name: at most " +
                               std::to_string(kMaxBaseLength) + " characters, a full stop and at most " +
                               std::to_string(kMaxExtensionLength) +
                               " more; letters and digits without accents and ! # $ % & ' ( ) - ^ _ ` { } ~");
    requireWhole(profileName, "the profile name");
    ProfileRecord record = recordByHand(location);
    setListed(record, listed);
    setNameText(record.FileName, fileName);
    setNameText(record.ProfileName, profileName);
    return record;
}

void addOrThrow(ProfileList& list, const ProfileRecord& record)
{
    if (addByHand(list, record) == nullptr)
        throw CommandError(kNotPossible,
                           "the list is full: it has " + std::to_string(kProfileSlots) + " profiles");
}

std::string printable(std::string_view text)
{
    std::string result;
    for (auto at = text.begin(); at != text.end();) {
        auto next = at;
        bool shown = utf8::internal::validate_next(next, text.end()) == utf8::internal::UTF8_OK;
        if (!shown)
            next = at + 1;
        else if (auto character = at; isUnprintable(utf8::unchecked::next(character)))
            shown = false;
        result += shown ? std::string(at, next) : "?";
        at = next;
    }
    return result;
}
