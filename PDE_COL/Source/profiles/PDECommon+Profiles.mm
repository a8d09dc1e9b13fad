#include "profiles/PDECommon+Profiles.h"

#include "common/ControlTable.h"
#include "common/Menus.h"
#include "common/StatusCodes.h"
#include "profiles/ProfileEdits.h"
#include "profiles/ProfileListOperations.h"
#include "profiles/ProfileName.h"
#include "profiles/ProfilePath.h"

#include <memory>
#include <new>

// The list behind a pop-up's profile kind, or -1.
static int32_t listOfKind(SInt16 kind)
{
    switch (kind) {
    case kRgbSourceProfiles:
        return kRgbList;
    case kDestinationProfiles:
        return kDstList;
    case kSimulationProfiles:
        return kSimList;
    default:
        return -1;
    }
}

// The list behind a profile row, as far as it can be read. Null for any other row, without a dictionary to
// go with it, and when memory is short.
static std::unique_ptr<ProfileList> readListOf(const PDEControlItem* item, NSDictionary* dictionary)
{
    int32_t index = item != nullptr ? listOfKind(item->profileClass) : -1;
    if (dictionary == nil || index < 0)
        return nullptr;
    std::unique_ptr<ProfileList> list(new (std::nothrow) ProfileList());
    if (list != nullptr)
        (void)VelPListReadProfile_Dict(list.get(), index);
    return list;
}

static NSString* entryKey(const PDEControlItem* item, const char* suffix)
{
    return [NSString stringWithFormat:@"%s%s", item->ppdKey, suffix];
}

static NSString* nameString(const char (&field)[kProfileNameSize])
{
    NSString* name = [NSString stringWithUTF8String:storableName(field).value_or("").c_str()];
    return name != nil ? name : @"";
}

NSString* locationWord(SInt32 location)
{
    switch (location) {
    case kOnDisk:
        return localizedText(@"Disk");
    case kOnCard:
        return localizedText(@"Card");
    default:
        return @"";
    }
}

// Titles of the profiles in a menu, in list order; of equal ones the last. `status` tells when one had to be
// left out.
static NSArray* menuTitles(const ProfileList& list, int* status)
{
    NSMutableArray* titles = [NSMutableArray array];
    NSMutableSet* taken = [NSMutableSet set];
    for (int32_t i = usedSlots(list) - 1; i >= 0; --i) {
        const ProfileRecord& record = list.records[i];
        if (isHidden(record))
            continue;
        NSString* word = locationWord(record.Location);
        NSString* title = [NSString
            stringWithFormat:@"%@(%@)%@", nameString(record.FileName), nameString(record.ProfileName), word];
        if (word == nil)
            *status = kStatusBadParameter;
        if (word == nil || [taken containsObject:title])
            continue;
        [taken addObject:title];
        [titles insertObject:title atIndex:0];
    }
    return titles;
}

@implementation PDECommon (Profiles)

+ (int)commonAddMenuFromProfilePlist:(const PDEControlItem*)table
{
    std::unique_ptr<ProfileList[]> lists(new (std::nothrow) ProfileList[kProfileListCount]());
    if (lists == nullptr)
        return kStatusNoMemory;
    int status = VelPListReadProfile_All(&lists[kRgbList], &lists[kSimList], &lists[kDstList]);
    if (status != 0)
        return status;
    NSArray* titles[kProfileListCount] = {};
    for (int32_t list = 0; hasRow(table, 0) && list < kProfileListCount; ++list)
        titles[list] = menuTitles(lists[list], &status);
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        int32_t list = listOfKind(table[i].profileClass);
        // Never set back: a table with other rows reports them, and nobody minds.
        if (list < 0) {
            status = kStatusBadParameter;
            continue;
        }
        NSPopUpButton* popup = table[i].control;
        auto choices = (NSInteger)[choicesOf(table[i]) count];
        while ([popup numberOfItems] > choices)
            [popup removeItemAtIndex:choices];
        appendItems(popup, titles[list]);
    }
    return status;
}

@end

@implementation PDECommon (TicketProfiles)

+ (SInt16)commonGetTicketAddedProfile:(const PDEControlItem*)item dict:(NSDictionary*)dictionary
{
    auto list = readListOf(item, dictionary);
    if (list == nullptr)
        return -1;
    id stored = [dictionary objectForKey:entryKey(item, "CustomFilename")];
    const char* coded = [stored isKindOfClass:[NSString class]] ? [stored UTF8String] : nullptr;
    auto path = coded != nullptr ? decodePrinterPath(coded) : std::nullopt;
    if (!path)
        return 0;
    SInt16 position = 0;
    for (int32_t i = 0; i < usedSlots(*list); ++i) {
        const ProfileRecord& record = list->records[i];
        if (!isListed(record))
            continue;
        ++position;
        // A profile at no known place takes up its position and is never the one.
        if (!printerFolder(record.Location).empty() && printerPath(record) == *path)
            return position;
    }
    return 0;
}

+ (int)commonSetTicketAddedProfile:(const PDEControlItem*)item
                              dict:(NSMutableDictionary*)dictionary
                            select:(SInt16)position
{
    auto list = readListOf(item, dictionary);
    if (list == nullptr)
        return -1;
    std::string path;
    SInt16 listed = 0;
    for (int32_t i = 0; i < usedSlots(*list); ++i) {
        if (isListed(list->records[i]) && ++listed == position)
            path = printerPath(list->records[i]);
    }
    // The option itself holds its first choice while a profile is chosen.
    if ([choicesOf(*item) count] > 0)
        [dictionary setObject:[[choicesOf(*item) objectAtIndex:0] objectAtIndex:kChoiceKeyword]
                       forKey:entryKey(item, "")];
    [dictionary setObject:[NSString stringWithUTF8String:encodePrinterPath(path).c_str()]
                   forKey:entryKey(item, "CustomFilename")];
    (void)[self commonSetTicketAddedProfileFlag:item dict:dictionary flag:@"True"];
    return 0;
}

+ (id)commonGetTicketAddedProfileFlag:(const PDEControlItem*)item dict:(NSDictionary*)dictionary
{
    if (listOfKind(item->profileClass) < 0)
        return nil;
    return [dictionary objectForKey:entryKey(item, "Custom")];
}

+ (int)commonSetTicketAddedProfileFlag:(const PDEControlItem*)item
                                  dict:(NSMutableDictionary*)dictionary
                                  flag:(NSString*)flag
{
    if (listOfKind(item->profileClass) >= 0)
        [dictionary setObject:flag forKey:entryKey(item, "Custom")];
    return 0;
}

@end
