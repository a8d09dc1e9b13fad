#include "common/PDECommon+Ticket.h"

#include "common/ControlTable.h"
#include "common/PDECommon+ControlTable.h"
#include "common/PDECommon+PPD.h"
#include "common/StatusCodes.h"
#include "profiles/PDECommon+Profiles.h"

#include <cstdlib>

static bool isDictionary(CFTypeRef object)
{
    return [PDECommon commonCFTypeIsValid:object type:CFDictionaryGetTypeID()];
}

static CFIndex choiceCount(const PDEControlItem& row)
{
    return row.choices != nullptr ? CFArrayGetCount(row.choices) : 0;
}

// Stores a mutable copy of the dictionary under the key, or a new one for null, and releases it: what a
// preset or a file gave back may be immutable, and no type test tells the two apart everywhere.
static void storeModelDictionary(PMPrintSettings settings, CFStringRef key, CFDictionaryRef stored)
{
    CFMutableDictionaryRef model =
        stored != nullptr ? CFDictionaryCreateMutableCopy(kCFAllocatorDefault, 0, stored)
                          : CFDictionaryCreateMutable(kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks,
                                                      &kCFTypeDictionaryValueCallBacks);
    if (model == nullptr)
        return;
    (void)PMPrintSettingsSetValue(settings, key, model, false);
    CFRelease(model);
}

static void storeQueueDictionary(CFMutableDictionaryRef model, CFStringRef queue)
{
    CFTypeRef stored = CFDictionaryGetValue(model, queue);
    if (stored != nullptr && !isDictionary(stored))
        return;
    CFMutableDictionaryRef choices =
        stored != nullptr
            ? CFDictionaryCreateMutableCopy(kCFAllocatorDefault, 0, static_cast<CFDictionaryRef>(stored))
            : CFDictionaryCreateMutable(kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks,
                                        &kCFTypeDictionaryValueCallBacks);
    if (choices == nullptr)
        return;
    CFDictionarySetValue(model, queue, choices);
    CFRelease(choices);
}

static void storeChoice(const PDEControlItem& row, CFIndex index, CFMutableDictionaryRef choices)
{
    // A pop-up without a selection, or a box whose choice the PPD lacks.
    if (index < 0)
        return;
    auto entry = static_cast<CFArrayRef>(CFArrayGetValueAtIndex(row.choices, index));
    CFTypeRef option = CFArrayGetValueAtIndex(entry, kChoiceOption);
    CFTypeRef keyword = CFArrayGetValueAtIndex(entry, kChoiceKeyword);
    if (option != nullptr && keyword != nullptr)
        CFDictionarySetValue(choices, option, keyword);
}

static bool storesProfile(const PDEControlItem& row, CFDictionaryRef choices)
{
    CFTypeRef flag = [PDECommon commonGetTicketAddedProfileFlag:&row dict:choices];
    return flag != nullptr && [(id)flag isEqual:@"True"];
}

// The index of the stored profile's item: profiles stand behind the PPD's choices. One that is no longer
// listed gives the PPD's default.
static int storedProfile(const PDEControlItem& row, CFDictionaryRef choices)
{
    SInt16 position = [PDECommon commonGetTicketAddedProfile:&row dict:choices];
    if (position > 0)
        return (int)choiceCount(row) + position - 1;
    return [PDECommon commonGetDefualtValueFromPPDWithSInt32:&row];
}

// The control value that the settings hold for a row. `carried` is the value of the row before.
static int storedValue(const PDEControlItem& row, CFDictionaryRef choices, int carried)
{
    CFStringRef key = CFStringCreateWithCString(kCFAllocatorDefault, row.ppdKey, kCFStringEncodingUTF8);
    if (key == nullptr)
        return carried;
    int value = carried;
    if (CFDictionaryContainsKey(choices, key)) {
        // A stored value that is no string takes over the value of the row before: kept so on purpose.
        CFTypeRef stored = CFDictionaryGetValue(choices, key);
        if ([PDECommon commonCFTypeIsValid:stored type:CFStringGetTypeID()])
            value = [PDECommon commonGetTicketValueWithSInt32:&row option:key choice:stored];
    } else {
        value = [PDECommon commonGetDefualtValueFromPPDWithSInt32:&row];
    }
    CFRelease(key);
    return value;
}

@implementation PDECommon (Ticket)

+ (CFMutableDictionaryRef)commonGetModelDictionary:(PMPrintSettings)settings session:(PMPrintSession)session
{
    auto key = (CFStringRef)[self commonGetPPDProductName:settings];
    auto queue = (CFStringRef)[self commonGetPrintQueueName:session];
    CFTypeRef model = nullptr;
    (void)PMPrintSettingsGetValue(settings, key, &model);
    if (model == nullptr || isDictionary(model)) {
        storeModelDictionary(settings, key, static_cast<CFDictionaryRef>(model));
        model = nullptr;
        (void)PMPrintSettingsGetValue(settings, key, &model);
    }
    if (queue == nullptr || !isDictionary(model))
        return nullptr;
    storeQueueDictionary((CFMutableDictionaryRef)model, queue);
    return (CFMutableDictionaryRef)[self commonCFDictionaryGetValueWithType:model key:queue];
}

+ (NSString*)commonGetPrintQueueName:(PMPrintSession)session
{
    PMPrinter printer = nullptr;
    if (PMSessionGetCurrentPrinter(session, &printer) != kPMNoError)
        return nil;
    return (NSString*)PMPrinterGetID(printer);
}

+ (CFDictionaryRef)commonCFDictionaryGetValueWithType:(CFTypeRef)dictionary key:(CFStringRef)key
{
    if (key == nullptr || !isDictionary(dictionary))
        return nullptr;
    auto entries = static_cast<CFDictionaryRef>(dictionary);
    if (CFDictionaryGetCount(entries) == 0 || !CFDictionaryContainsKey(entries, key))
        return nullptr;
    CFTypeRef value = CFDictionaryGetValue(entries, key);
    return isDictionary(value) ? static_cast<CFDictionaryRef>(value) : nullptr;
}

+ (BOOL)commonCFTypeIsValid:(CFTypeRef)object type:(CFTypeID)type
{
    return object != nullptr && CFGetTypeID(object) == type;
}

+ (int)commonCFDictionaryMapToTicket:(PMPrintSettings)settings copyDict:(CFDictionaryRef)dictionary
{
    auto count = (size_t)CFDictionaryGetCount(dictionary);
    auto keys = static_cast<const void**>(calloc(count * sizeof(void*) + 1, 1));
    auto values = static_cast<const void**>(calloc(count * sizeof(void*) + 1, 1));
    int status = keys != nullptr && values != nullptr ? kStatusOK : kStatusNoMemory;
    if (status == kStatusOK) {
        CFDictionaryGetKeysAndValues(dictionary, keys, values);
        for (size_t i = 0; i < count; ++i) {
            // An entry that has the model dictionary's own name, which only broken settings hold, would take
            // the place of all queues' choices.
            if ([self commonCFTypeIsValid:keys[i] type:CFStringGetTypeID()] &&
                ![(NSString*)keys[i] isEqualToString:[self commonGetPPDProductName:settings]])
                (void)PMPrintSettingsSetValue(settings, static_cast<CFStringRef>(keys[i]), values[i], false);
        }
    }
    free(keys);
    free(values);
    return status;
}

+ (int)commonGetTicketValueWithSInt32:(const PDEControlItem*)item
                               option:(CFStringRef)option
                               choice:(CFTypeRef)choice
{
    if (item == nullptr)
        return 0;
    bool isString = [self commonCFTypeIsValid:choice type:CFStringGetTypeID()];
    switch (item->kind) {
    case PDEControlKindPopup:
        return isString ? [self commonFindPPDKeyPairsMatch:item->choices
                                                    option:option
                                                    choice:static_cast<CFStringRef>(choice)]
                        : -1;
    case PDEControlKindCheckBox:
        return isString && [@[ @"True", @"TRUE", @"true" ] containsObject:(NSString*)choice] ? 1 : 0;
    case PDEControlKindCleared:
        [item->control setIntValue:0];
        return 0;
    default:
        return 0;
    }
}

+ (int)commonGetTicket:(PMPrintSession)session kind:(CFStringRef)key ticket:(SInt32*)handle
{
    *handle = 0;
    CFTypeRef data = nullptr;
    OSStatus status = PMSessionGetDataFromSession(session, key, &data);
    if (status != kPMNoError)
        return status;
    SInt32 number = 0;
    bool isNumber = [self commonCFTypeIsValid:data type:CFNumberGetTypeID()] &&
                    CFNumberGetValue(static_cast<CFNumberRef>(data), kCFNumberSInt32Type, &number);
    if (data != nullptr)
        CFRelease(data);
    if (isNumber)
        *handle = number;
    return isNumber ? kStatusOK : kStatusBadSessionData;
}

+ (int)commonSyncTicketFromPane:(PMPrintSettings)settings
                        session:(PMPrintSession)session
                          table:(PDEControlItem*)table
{
    CFMutableDictionaryRef choices = [self commonGetModelDictionary:settings session:session];
    if (choices == nullptr)
        return kStatusOK;
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        const PDEControlItem& row = table[i];
        if (!hasOption(row))
            continue;
        int value = [self commonGetControlValueFromPPDWithSInt32:&row];
        auto count = (SInt16)choiceCount(row);
        CFStringRef flag = CFSTR("False");
        if (value < count) {
            storeChoice(row, value, choices);
        } else {
            (void)[self commonSetTicketAddedProfile:&row dict:choices select:(SInt16)(value - count + 1)];
            flag = CFSTR("True");
        }
        (void)[self commonSetTicketAddedProfileFlag:&row dict:choices flag:flag];
    }
    return [self commonCFDictionaryMapToTicket:settings copyDict:choices];
}

+ (int)commonSyncPaneFromTicket:(PMPrintSettings)settings
                        session:(PMPrintSession)session
                          table:(PDEControlItem*)table
{
    CFMutableDictionaryRef choices = [self commonGetModelDictionary:settings session:session];
    if (choices == nullptr)
        return kStatusOK;
    int carried = -1;
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        if (!hasOption(table[i]))
            continue;
        carried = storesProfile(table[i], choices) ? storedProfile(table[i], choices)
                                                   : storedValue(table[i], choices, carried);
        if (carried != -1)
            [self commonSetControlValueWithSInt32:&table[i] value:carried];
    }
    return [self commonCFDictionaryMapToTicket:settings copyDict:choices];
}

@end
