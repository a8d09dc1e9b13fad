#include "profiles/ProfileListFile.h"

#include "profiles/Descriptor.h"
#include "profiles/DriverPaths.h"
#include "profiles/ProfileName.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr unsigned kSlotDigits = 4;

constexpr int32_t ProfileRecord::*kIntegerFields[kFirstNameField] = {
    &ProfileRecord::IndexOnDevice, &ProfileRecord::InMenu, &ProfileRecord::ProfileClass,
    &ProfileRecord::Location};

char (&nameField(ProfileRecord& record, StoredField field))[kProfileNameSize]
{
    return field == kFileName ? record.FileName : record.ProfileName;
}

/// The slot that a key of a field dictionary names, or -1: the field's key and exactly four digits.
int slotOf(std::string_view key, std::string_view fieldKey)
{
    if (key.size() != fieldKey.size() + kSlotDigits || !key.starts_with(fieldKey))
        return -1;
    int slot = 0;
    for (char digit : key.substr(fieldKey.size())) {
        if (digit < '0' || digit > '9')
            return -1;
        slot = slot * 10 + (digit - '0');
    }
    return slot < kProfileSlots ? slot : -1;
}

/// Stores a value of the field's type; false when it has another type or does not fit.
bool storeValue(PropertyListNode value, StoredField field, ProfileRecord& record)
{
    if (field >= kFirstNameField) {
        std::optional<std::string> text = value.string();
        if (text)
            setNameText(nameField(record, field), *text);
        return text.has_value();
    }
    std::optional<int32_t> number = value.integer();
    if (number)
        record.*kIntegerFields[field] = *number;
    return number.has_value();
}

void extractField(PropertyListNode dictionary, StoredField field, StoredList& stored)
{
    dictionary.forEachEntry([&](std::string_view key, PropertyListNode value) {
        int slot = slotOf(key, kFieldKeys[field]);
        if (slot >= 0 && storeValue(value, field, stored.list.records[slot]))
            stored.fields[slot] |= static_cast<uint8_t>(1 << field);
    });
}

bool isComplete(PropertyListNode classDictionary)
{
    return std::all_of(std::begin(kFieldKeys), std::end(kFieldKeys),
                       [&](const char* key) { return classDictionary[key].isDictionary(); });
}

void extractList(PropertyListNode classDictionary, StoredList& stored)
{
    stored.complete = isComplete(classDictionary);
    for (int field = 0; field < kStoredFields; ++field)
        extractField(classDictionary[kFieldKeys[field]], static_cast<StoredField>(field), stored);
    std::optional<int32_t> count = classDictionary[kCountKey].integer();
    stored.hasCount = count.has_value();
    stored.list.iNum = count.value_or(0);
}

/// Puts the four digits of a slot's number at the end of a key: formatting takes longer than all the rest.
void setSlot(std::string& key, int slot)
{
    for (auto digit = key.rbegin(); digit != key.rbegin() + kSlotDigits; ++digit, slot /= 10)
        *digit = static_cast<char>('0' + slot % 10);
}

void addField(const ProfileList& list, StoredField field, PropertyListNode dictionary)
{
    std::string key = std::string(kFieldKeys[field]).append(kSlotDigits, '0');
    for (int slot = 0; slot < kProfileSlots; ++slot) {
        setSlot(key, slot);
        ProfileRecord record = list.records[slot];
        if (field < kFirstNameField)
            dictionary.addInteger(key.c_str(), record.*kIntegerFields[field]);
        else if (std::optional<std::string> name = storableName(nameField(record, field)))
            dictionary.addString(key.c_str(), *name);
    }
}

void readRecord(const StoredList& stored, int slot, ProfileRecord& record)
{
    ProfileRecord from = stored.list.records[slot];
    for (int i = 0; i < kStoredFields; ++i) {
        StoredField field = static_cast<StoredField>(i);
        if ((stored.fields[slot] & (1 << i)) == 0)
            continue;
        if (field < kFirstNameField)
            record.*kIntegerFields[field] = from.*kIntegerFields[field];
        else
            memcpy(nameField(record, field), nameField(from, field), kProfileNameSize);
    }
}

#ifdef __APPLE__
#define st_mtim st_mtimespec
#define st_ctim st_ctimespec
constexpr clockid_t kFileClock = CLOCK_REALTIME;
#else
// File times are taken from this clock: it stands still for some milliseconds between ticks.
constexpr clockid_t kFileClock = CLOCK_REALTIME_COARSE;
#endif

/// A change in the same clock tick would leave the times as they are, so a file is only remembered when
/// its last change lies in an earlier tick.
bool isSettled(const FileVersion& version)
{
    timespec now{};
    clock_gettime(kFileClock, &now);
    return version.changed < FileVersion::Time(now.tv_sec, now.tv_nsec);
}

FileProblem checkStatus(const struct stat& status)
{
    if (!S_ISREG(status.st_mode))
        return FileProblem::kNotAFile;
    return status.st_size > static_cast<off_t>(kLongestListFile) ? FileProblem::kTooLong : FileProblem::kNone;
}

} // namespace

void extractLists(const PropertyListDocument& document, StoredLists& lists)
{
    lists = {};
    for (int index = 0; index < kProfileListCount; ++index)
        extractList(document.root()[kListKeys[index]], lists[index]);
}

void readList(const StoredList& stored, ProfileList& list, bool cannotBeWalked)
{
    ProfileRecord* record = list.records;
    for (int slot = 0; slot < kProfileSlots; ++slot) {
        int32_t code = stored.list.records[slot].InMenu;
        if (cannotBeWalked && code == kFoundHidden)
            continue;
        readRecord(stored, slot, *record);
        if (cannotBeWalked && code == kFoundListed)
            record->InMenu = kByHandListed;
        ++record;
    }
    if (stored.hasCount)
        list.iNum = stored.list.iNum;
    VelPlistCheckWithInMenu_Dict(&list);
}

void VelPlistCheckWithInMenu_Dict(ProfileList* list)
{
    auto used = std::count_if(std::begin(list->records), std::end(list->records),
                              [](const ProfileRecord& record) { return record.InMenu != kFreeSlot; });
    if (used == list->iNum)
        return;
    std::fill(std::begin(list->records) + used, std::end(list->records), ProfileRecord{});
    list->iNum = static_cast<int32_t>(used);
}

void CreatePropsDictionary(const ProfileList& list, PropertyListNode classDictionary)
{
    classDictionary.addInteger(kCountKey, list.iNum);
    for (int field = 0; field < kStoredFields; ++field)
        addField(list, static_cast<StoredField>(field), classDictionary.addDictionary(kFieldKeys[field]));
}

std::string listFileText(const ProfileList& rgb, const ProfileList& sim, const ProfileList& dst)
{
    PropertyListDocument document;
    PropertyListNode root = document.root();
    const ProfileList* lists[kProfileListCount] = {&rgb, &sim, &dst};
    for (int index = 0; index < kProfileListCount; ++index)
        CreatePropsDictionary(*lists[index], root.addDictionary(kListKeys[index]));
    root.addInteger("PlistVersion", 1);
    return document.text();
}

bool isListFileText(std::string text)
{
    std::optional<PropertyListDocument> document = PropertyListDocument::parse(std::move(text));
    return document && std::all_of(std::begin(kListKeys), std::end(kListKeys),
                                   [&](const char* key) { return isComplete(document->root()[key]); });
}

FileVersion versionOf(const std::string& path)
{
    struct stat status;
    if (stat(path.c_str(), &status) != 0)
        return {};
    return {status.st_dev,
            status.st_ino,
            status.st_size,
            {status.st_mtim.tv_sec, status.st_mtim.tv_nsec},
            {status.st_ctim.tv_sec, status.st_ctim.tv_nsec}};
}

FileProblem readListFile(int descriptor, std::string& text)
{
    struct stat status;
    if (fstat(descriptor, &status) != 0)
        return FileProblem::kUnreadable;
    if (FileProblem problem = checkStatus(status); problem != FileProblem::kNone)
        return problem;
    // One byte more than expected: a file that grew meanwhile is noticed.
    text.resize(static_cast<size_t>(status.st_size) + 1);
    size_t done = 0;
    ssize_t count;
    do {
        count = pread(descriptor, text.data() + done, text.size() - done, static_cast<off_t>(done));
        done += static_cast<size_t>(std::max<ssize_t>(count, 0));
    } while (count > 0 || (count < 0 && errno == EINTR));
    bool whole = count == 0 && done < text.size();
    text.resize(done);
    return whole ? FileProblem::kNone : FileProblem::kUnreadable;
}

FileProblem readListFile(const std::string& path, std::string& text)
{
    struct stat status;
    // Asked before opening, since opening alone can set a device going; and again of what was opened.
    if (stat(path.c_str(), &status) != 0)
        return errno == ENOENT || errno == ENOTDIR ? FileProblem::kMissing : FileProblem::kUnreadable;
    if (FileProblem problem = checkStatus(status); problem != FileProblem::kNone)
        return problem;
    return readListFile(Descriptor(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)).get(),
                        text);
}

const StoredLists* currentLists()
{
    static struct {
        std::string path; ///< empty: nothing to remember
        FileVersion version;
        bool parsed;
        StoredLists lists;
    } last;
    std::string path = currentListPath();
    // Asked before reading: what is changed from now on gets another time.
    FileVersion version = versionOf(path);
    if (last.path != path || last.version != version) {
        bool settled = isSettled(version);
        last.path.clear();
        std::string text;
        if (readListFile(path, text) != FileProblem::kNone)
            return nullptr;
        std::optional<PropertyListDocument> document = PropertyListDocument::parse(std::move(text));
        last.parsed = document.has_value();
        if (document)
            extractLists(*document, last.lists);
        last.version = version;
        if (settled)
            last.path = path;
    }
    return last.parsed ? &last.lists : nullptr;
}
