#include "profiles/ProfileListFile.h"

#include "profiles/DriverPaths.h"
#include "profiles/ProfileName.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr unsigned kSlotDigits = 4;
constexpr uint8_t kAllFields = (1 << kStoredFields) - 1;

int32_t& integerField(ProfileRecord& record, StoredField field)
{
    switch (field) {
    case kIndexOnDevice:
        return record.IndexOnDevice;
    case kInMenu:
        return record.InMenu;
    case kProfileClass:
        return record.ProfileClass;
    default:
        return record.Location;
    }
}

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
        integerField(record, field) = *number;
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
            dictionary.addInteger(key.c_str(), integerField(record, field));
        else if (std::optional<std::string> name = storableName(nameField(record, field)))
            dictionary.addString(key.c_str(), *name);
    }
}

} // namespace

void extractLists(const PropertyListDocument& document, StoredLists& lists)
{
    lists = {};
    for (int index = 0; index < kProfileListCount; ++index)
        extractList(document.root()[kListKeys[index]], lists[index]);
}

void readRecord(const StoredList& stored, int slot, ProfileRecord& record)
{
    ProfileRecord from = stored.list.records[slot];
    if (stored.fields[slot] == kAllFields) {
        from.TableColumn7 = record.TableColumn7;
        record = from;
        return;
    }
    for (int i = 0; i < kStoredFields; ++i) {
        StoredField field = static_cast<StoredField>(i);
        if ((stored.fields[slot] & (1 << i)) == 0)
            continue;
        if (field < kFirstNameField)
            integerField(record, field) = integerField(from, field);
        else
            memcpy(nameField(record, field), nameField(from, field), kProfileNameSize);
    }
}

void readList(const StoredList& stored, ProfileList& list)
{
    for (int slot = 0; slot < kProfileSlots; ++slot)
        readRecord(stored, slot, list.records[slot]);
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
