#include "profiles/ProfileListFile.h"
#include "profiles/ProfileName.h"

#include <cassert>
#include <memory>

// Whatever is in a list file: reading it gives lists that follow the rules, and what is written from those is
// a list file again that reads as the same lists, but for names that cannot be written as they are.

static void readLists(const PropertyListDocument& document, ProfileList (&lists)[kProfileListCount])
{
    auto stored = std::make_unique<StoredLists>();
    extractLists(document, *stored);
    for (int index = 0; index < kProfileListCount; ++index) {
        lists[index] = {};
        readList((*stored)[index], lists[index]);
    }
}

extern "C" int LLVMFuzzerTestOneInput(const char* data, size_t size)
{
    static ProfileList lists[kProfileListCount], again[kProfileListCount];
    auto document = PropertyListDocument::parse({data, size});
    if (!document)
        return 0;
    readLists(*document, lists);
    std::string written = listFileText(lists[kRgbList], lists[kSimList], lists[kDstList]);
    assert(isListFileText(written));
    readLists(*PropertyListDocument::parse(written), again);
    for (int index = 0; index < kProfileListCount; ++index) {
        // The rule may lose a record behind a hole and count it still: only the next read sets that right.
        VelPlistCheckWithInMenu_Dict(&lists[index]);
        assert(lists[index].iNum >= 0 && lists[index].iNum == again[index].iNum);
        for (int slot = 0; slot < kProfileSlots; ++slot) {
            const ProfileRecord &one = lists[index].records[slot], &other = again[index].records[slot];
            assert(one.InMenu == other.InMenu && one.Location == other.Location);
            // A carriage return comes back as a line feed, as everywhere in XML.
            assert(nameText(one.FileName).find('\r') != std::string_view::npos ||
                   nameText(other.FileName) == storableName(one.FileName).value_or(""));
        }
    }
    return 0;
}
