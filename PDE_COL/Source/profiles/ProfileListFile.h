#pragma once

#include "profiles/HelperProtocol.h"
#include "profiles/ProfileRecord.h"
#include "profiles/PropertyList.h"

#include <ctime>
#include <string>
#include <sys/types.h>
#include <utility>

// The list file: its layout, safe reading, and the text that is written. Nothing here writes a file.

/// Keys of the three class dictionaries, by ProfileListIndex.
inline constexpr const char* kListKeys[kProfileListCount] = {"RGB", "SIM", "DST"};
inline constexpr const char kCountKey[] = "iNum";

/// The fields of a record that the file holds: keys of the field dictionaries in a class dictionary, and
/// with four digits for the slot after them the keys in those.
enum StoredField {
    kIndexOnDevice,
    kInMenu,
    kProfileClass,
    kLocation,
    kFileName,
    kProfileName,
    kStoredFields
};
inline constexpr const char* kFieldKeys[kStoredFields] = {"IndexOnDevice", "InMenu",   "ProfileClass",
                                                          "Location",      "FileName", "ProfileName"};
inline constexpr StoredField kFirstNameField = kFileName;

/// One class of a list file, as it stands there: before the consistency rule.
struct StoredList {
    bool complete;                 ///< the class and its six field dictionaries are there
    bool hasCount;                 ///< "iNum" is there
    uint8_t fields[kProfileSlots]; ///< by slot: a bit for each StoredField that has an entry
    ProfileList list;              ///< a field without an entry is zero
};

using StoredLists = std::array<StoredList, kProfileListCount>;

/// The lists in a parsed file.
void extractLists(const PropertyListDocument& document, StoredLists& lists);

/// What tells one version of a file from another; all zero when there is no file.
struct FileVersion {
    using Time = std::pair<time_t, long>;
    dev_t device{};
    ino_t inode{};
    off_t size{};
    Time modified, changed;
    bool operator==(const FileVersion&) const = default;
};
FileVersion versionOf(const std::string& path);

/// The lists in the current user's file. Null when it cannot be read or parsed. The result stays valid
/// until the next call. The file is parsed once, until `stat` says that it is another one or was changed.
const StoredLists* currentLists();

/// Reads a whole list: the fields and the count that `stored` has, the others left as they are, then the
/// consistency rule. For a queue that cannot be walked, records with InMenu 2 are left out and 4 is read
/// as 6.
void readList(const StoredList& stored, ProfileList& list, bool cannotBeWalked = false);

/// The consistency rule, run after every read: when the count differs from the number of used records, it
/// becomes that number and every record from there on is cleared. Used records behind a hole are lost then;
/// that is wanted.
void VelPlistCheckWithInMenu_Dict(ProfileList* list);

/// Adds all 500 slots and the count of `list` to an empty class dictionary. A name that has no UTF-8 text
/// gets no entry.
void CreatePropsDictionary(const ProfileList& list, PropertyListNode classDictionary);

/// The text of a list file.
std::string listFileText(const ProfileList& rgb, const ProfileList& sim, const ProfileList& dst);

/// True when `text` is a list file from which all three lists can be read.
bool isListFileText(std::string text);

enum class FileProblem { kNone, kMissing, kNotAFile, kTooLong, kUnreadable };

/// Reads a regular file of at most kLongestListFile bytes into `text`, from its beginning. Never waits for a
/// FIFO or device.
FileProblem readListFile(const std::string& path, std::string& text);
FileProblem readListFile(int descriptor, std::string& text);
