#include "Fuzz.h"
#include "profiles/ProfileListFile.h"
#include "profiles/ProfileName.h"
#include "profiles/ProfilePath.h"

#include <memory>

// Whatever is in a list file: reading it gives lists that follow the rules, and what is written from those is
// a list file again that reads as the same lists, but for names that cannot be written as they are.

namespace {

void readLists(const std::string& text, ProfileList (&lists)[kProfileListCount])
{
    auto document = PropertyListDocument::parse(text);
    require(document.has_value());
    auto stored = std::make_unique<StoredLists>();
    extractLists(*document, *stored);
    for (int index = 0; index < kProfileListCount; ++index)
        readList((*stored)[index], lists[index]);
}

void requireSame(const ProfileRecord& written, const ProfileRecord& read)
{
    require(written.IndexOnDevice == read.IndexOnDevice && written.InMenu == read.InMenu &&
            written.ProfileClass == read.ProfileClass && written.Location == read.Location);
    // A carriage return comes back as a line feed, as everywhere in XML.
    if (nameText(written.FileName).find('\r') == std::string_view::npos)
        require(nameText(read.FileName) == storableName(written.FileName).value_or(""));
    std::string path = printerPath(read);
    require(decodePrinterPath(encodePrinterPath(path)) == path);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string text = textOf(data, size);
    auto document = PropertyListDocument::parse(text);
    if (!document)
        return 0;
    static ProfileList lists[kProfileListCount], again[kProfileListCount];
    for (int index = 0; index < kProfileListCount; ++index)
        lists[index] = again[index] = {};
    readLists(text, lists);
    std::string written = listFileText(lists[kRgbList], lists[kSimList], lists[kDstList]);
    require(isListFileText(written));
    readLists(written, again);
    for (int index = 0; index < kProfileListCount; ++index) {
        // The rule may lose a record behind a hole and count it still: only the next read sets that right.
        VelPlistCheckWithInMenu_Dict(&lists[index]);
        require(lists[index].iNum >= 0 && lists[index].iNum <= kProfileSlots);
        require(lists[index].iNum == again[index].iNum);
        for (int slot = 0; slot < kProfileSlots; ++slot)
            requireSame(lists[index].records[slot], again[index].records[slot]);
    }
    return 0;
}
