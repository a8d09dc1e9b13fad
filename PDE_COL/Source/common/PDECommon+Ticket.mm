#include "common/PDECommon+Ticket.h"

#include "common/ControlTable.h"
#include "common/PDECommon+ControlTable.h"
#include "common/PDECommon+PPD.h"
#include "common/StatusCodes.h"

static bool isString(id object)
{
    return [PDECommon commonCFTypeIsValid:object type:CFStringGetTypeID()];
}

static bool isDictionary(id object)
{
    return [PDECommon commonCFTypeIsValid:object type:CFDictionaryGetTypeID()];
}

// A copy to write into: what a preset or a file gave back may be immutable, and no type test tells.
static NSMutableDictionary* writable(NSDictionary* stored)
{
    NSMutableDictionary* copy = [NSMutableDictionary dictionary];
    [copy addEntriesFromDictionary:stored];
    return copy;
}

static id valueOf(PMPrintSettings settings, NSString* key)
{
    CFTypeRef value = nullptr;
    (void)PMPrintSettingsGetValue(settings, (CFStringRef)key, &value);
    return (id)value;
}

// False when the settings refuse it, which are then as before.
static bool setValue(PMPrintSettings settings, NSString* key, id value)
{
    return PMPrintSettingsSetValue(settings, (CFStringRef)key, (CFTypeRef)value, false) == kPMNoError;
}

static bool storeChoices(PMPrintSettings settings, PMPrintSession session, NSDictionary* choices)
{
    NSString* key = [PDECommon commonGetPPDProductName:settings];
    NSMutableDictionary* model = writable(valueOf(settings, key));
    [model setObject:choices forKey:[PDECommon commonGetPrintQueueName:session]];
    return setValue(settings, key, model);
}

static void storeChoice(const PDEControlItem& row, int index, NSMutableDictionary* choices)
{
    // A pop-up without a selection, or a box whose choice the PPD lacks.
    if (index < 0)
        return;
    NSArray* entry = [choicesOf(row) objectAtIndex:(NSUInteger)index];
    [choices setObject:[entry objectAtIndex:kChoiceKeyword] forKey:[entry objectAtIndex:kChoiceOption]];
}

// The index of the stored profile's item: profiles stand behind the PPD's choices. One that is no longer
// listed gives the PPD's default.
static int storedProfile(const PDEControlItem& row, NSDictionary* choices)
{
    SInt16 position = [PDECommon commonGetTicketAddedProfile:&row dict:choices];
    if (position > 0)
        return (int)[choicesOf(row) count] + position - 1;
    return [PDECommon commonGetDefualtValueFromPPDWithSInt32:&row];
}

// The control value that the settings hold for a row. `carried` is the value of the row before.
static int storedValue(const PDEControlItem& row, NSDictionary* choices, int carried)
{
    NSString* key = asciiText(row.ppdKey);
    if (key == nil)
        return carried;
    id stored = [choices objectForKey:key];
    if (stored == nil)
        return [PDECommon commonGetDefualtValueFromPPDWithSInt32:&row];
    // A stored value that is no string takes over the value of the row before: kept so on purpose.
    return isString(stored) ? [PDECommon commonGetTicketValueWithSInt32:&row option:key choice:stored]
                            : carried;
}

@implementation PDECommon (Ticket)

+ (NSMutableDictionary*)commonGetModelDictionary:(PMPrintSettings)settings session:(PMPrintSession)session
{
    NSString* key = [self commonGetPPDProductName:settings];
    NSString* queue = [self commonGetPrintQueueName:session];
    if (valueOf(settings, key) == nil)
        (void)setValue(settings, key, [NSMutableDictionary dictionary]);
    NSDictionary* model = valueOf(settings, key);
    if (queue == nil || !isDictionary(model))
        return nil;
    NSDictionary* stored = [self commonCFDictionaryGetValueWithType:model key:queue];
    if (stored == nil && [model objectForKey:queue] != nil)
        return nil;
    NSMutableDictionary* choices = writable(stored);
    // What locked settings hold can still be shown.
    return storeChoices(settings, session, choices) || stored != nil ? choices : nil;
}

+ (NSString*)commonGetPrintQueueName:(PMPrintSession)session
{
    PMPrinter printer = nullptr;
    if (PMSessionGetCurrentPrinter(session, &printer) != kPMNoError)
        return nil;
    return (NSString*)PMPrinterGetID(printer);
}

+ (NSDictionary*)commonCFDictionaryGetValueWithType:(id)dictionary key:(NSString*)key
{
    id value = key != nil && isDictionary(dictionary) ? [dictionary objectForKey:key] : nil;
    return isDictionary(value) ? value : nil;
}

+ (BOOL)commonCFTypeIsValid:(id)object type:(CFTypeID)type
{
    return object != nil && CFGetTypeID((CFTypeRef)object) == type;
}

+ (int)commonCFDictionaryMapToTicket:(PMPrintSettings)settings copyDict:(NSDictionary*)dictionary
{
    for (id key in dictionary) {
        // An entry that has the model dictionary's own name, which only broken settings hold, would take the
        // place of all queues' choices.
        if (isString(key) && ![key isEqual:[self commonGetPPDProductName:settings]])
            (void)setValue(settings, key, [dictionary objectForKey:key]);
    }
    return kStatusOK;
}

+ (int)commonGetTicketValueWithSInt32:(const PDEControlItem*)item option:(NSString*)option choice:(id)choice
{
    if (item == nullptr)
        return 0;
    switch (item->kind) {
    case PDEControlKindPopup:
        return [self commonFindPPDKeyPairsMatch:choicesOf(*item) option:option choice:choice];
    case PDEControlKindCheckBox:
        return choice != nil && [@[ @"True", @"TRUE", @"true" ] containsObject:choice];
    case PDEControlKindCleared:
        [item->control setIntValue:0];
        return 0;
    default:
        return 0;
    }
}

+ (int)commonGetTicket:(PMPrintSession)session kind:(NSString*)key ticket:(SInt32*)handle
{
    *handle = 0;
    CFTypeRef data = nullptr;
    OSStatus status = PMSessionGetDataFromSession(session, (CFStringRef)key, &data);
    if (status != kPMNoError)
        return status;
    NSNumber* number = (NSNumber*)data;
    // A number that loses something on the way is refused.
    if (![number isKindOfClass:[NSNumber class]] || [number doubleValue] != [number intValue])
        return kStatusBadSessionData;
    *handle = [number intValue];
    return kStatusOK;
}

+ (int)commonSyncTicketFromPane:(PMPrintSettings)settings
                        session:(PMPrintSession)session
                          table:(PDEControlItem*)table
{
    NSMutableDictionary* choices = [self commonGetModelDictionary:settings session:session];
    if (choices == nil)
        return kStatusOK;
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        const PDEControlItem& row = table[i];
        if (!hasOption(row))
            continue;
        int value = [self commonGetControlValueFromPPDWithSInt32:&row];
        auto count = (SInt16)[choicesOf(row) count];
        if (value < count)
            storeChoice(row, value, choices);
        else
            (void)[self commonSetTicketAddedProfile:&row dict:choices select:(SInt16)(value - count + 1)];
        NSString* flag = value < count ? @"False" : @"True";
        (void)[self commonSetTicketAddedProfileFlag:&row dict:choices flag:flag];
    }
    // Settings may keep a copy of what they are given. Where they refuse it, the top level keeps its choices
    // too: what is printed is what is shown the next time.
    if (!storeChoices(settings, session, choices))
        return kStatusOK;
    return [self commonCFDictionaryMapToTicket:settings copyDict:choices];
}

+ (int)commonSyncPaneFromTicket:(PMPrintSettings)settings
                        session:(PMPrintSession)session
                          table:(PDEControlItem*)table
{
    NSDictionary* choices = [self commonGetModelDictionary:settings session:session];
    if (choices == nil)
        return kStatusOK;
    int carried = -1;
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        if (!hasOption(table[i]))
            continue;
        bool profile = [[self commonGetTicketAddedProfileFlag:&table[i] dict:choices] isEqual:@"True"];
        carried = profile ? storedProfile(table[i], choices) : storedValue(table[i], choices, carried);
        if (carried != -1)
            [self commonSetControlValueWithSInt32:&table[i] value:carried];
    }
    return [self commonCFDictionaryMapToTicket:settings copyDict:choices];
}

@end
