#include "common/PDECommon+PPD.h"

#include "common/PDECommon+Ticket.h"
#include "common/StatusCodes.h"

#include <cstring>
#include <initializer_list>

static const NSStringEncoding kMacRoman = (NSStringEncoding)30;

struct EncodingName {
    const char* name;
    NSStringEncoding string;
    CFStringEncoding cfString;
};

static const EncodingName kEncodings[] = {
    {"ISOLatin1", (NSStringEncoding)5, kCFStringEncodingISOLatin1},
    {"WindowsANSI", (NSStringEncoding)12, kCFStringEncodingWindowsLatin1},
    {"JIS83-RKSJ", (NSStringEncoding)8, kCFStringEncodingShiftJIS},
    {"UTF-8", (NSStringEncoding)4, kCFStringEncodingUTF8},
    {"UTF8", (NSStringEncoding)4, kCFStringEncodingUTF8},
};

static EncodingName encodingOf(const ppd_file_t* ppd)
{
    const char* wanted = ppd != nullptr ? ppd->lang_encoding : nullptr;
    for (const EncodingName& encoding : kEncodings) {
        if (wanted != nullptr && strcmp(encoding.name, wanted) == 0)
            return encoding;
    }
    return {"", kMacRoman, kCFStringEncodingMacRoman};
}

// A new string. Bytes that the encoding does not know are taken as Mac OS Roman, which knows all of them:
// a choice list has no room for a missing string.
static CFStringRef newChoiceString(const char* bytes, CFStringEncoding encoding)
{
    CFStringRef string = CFStringCreateWithCString(kCFAllocatorDefault, bytes, encoding);
    if (string == nullptr)
        string = CFStringCreateWithCString(kCFAllocatorDefault, bytes, kCFStringEncodingMacRoman);
    return string;
}

static void clearMark(ppd_file_t* ppd, const ppd_option_t* option, ppd_choice_t* choice)
{
    choice->marked = 0;
    // libcups keeps the marked choices a second time, in an array that tells them apart by their option only.
    while (cupsArrayRemove(ppd->marked, choice))
        continue;
    for (int i = 0; i < option->num_choices; ++i) {
        if (option->choices[i].marked)
            cupsArrayAdd(ppd->marked, &option->choices[i]);
    }
    (void)ppdConflicts(ppd);
}

static CFStringRef element(CFArrayRef choices, CFIndex entry, CFIndex index)
{
    if (choices == nullptr || entry < 0 || entry >= CFArrayGetCount(choices))
        return nullptr;
    auto strings = static_cast<CFArrayRef>(CFArrayGetValueAtIndex(choices, entry));
    return static_cast<CFStringRef>(CFArrayGetValueAtIndex(strings, index));
}

// Index of the choice that a check box stands for, -1 when the PPD lacks it.
static int checkBoxChoice(const PDEControlItem* item)
{
    CFStringRef key = CFStringCreateWithCString(kCFAllocatorDefault, item->ppdKey, kCFStringEncodingUTF8);
    if (key == nullptr)
        return 0;
    bool on = (SInt16)[item->control intValue] != 0;
    int index = [PDECommon commonFindPPDKeyPairsMatch:item->choices
                                               option:key
                                               choice:on ? CFSTR("True") : CFSTR("False")];
    CFRelease(key);
    return index;
}

@implementation PDECommon (PPD)

+ (int)commonGetPPDArrayForUIOption:(ppd_file_t*)ppd key:(const char*)key array:(CFMutableArrayRef*)array
{
    if (ppdFindOption(ppd, key) == nullptr)
        return kStatusNoSuchOption;
    *array = CFArrayCreateMutable(kCFAllocatorDefault, 0, &kCFTypeArrayCallBacks);
    if (*array == nullptr)
        return kStatusListNotCreated;
    SInt16 count = 0;
    (void)[self commonGetUIListFromPPD:ppd key:key array:array count:&count];
    return kStatusOK;
}

+ (int)commonGetUIListFromPPD:(ppd_file_t*)ppd
                          key:(const char*)key
                        array:(CFMutableArrayRef*)array
                        count:(SInt16*)count
{
    CFStringEncoding encoding = [self commonGetCFStringEncodingFromPPD:ppd];
    const ppd_option_t* option = ppdFindOption(ppd, key);
    if (*array == nullptr || option == nullptr || option->choices == nullptr)
        return kStatusOK;
    for (int i = 0; i < option->num_choices; ++i) {
        const ppd_choice_t& choice = option->choices[i];
        BOOL conflicted = [self commonIsPPDChoiceConflicted:ppd option:option->keyword choice:choice.choice];
        CFMutableArrayRef entry = CFArrayCreateMutable(kCFAllocatorDefault, 0, &kCFTypeArrayCallBacks);
        if (entry == nullptr)
            continue;
        for (const char* text : {option->keyword, option->defchoice, choice.choice, choice.text}) {
            CFStringRef string = newChoiceString(text, encoding);
            CFArrayAppendValue(entry, string);
            CFRelease(string);
        }
        CFArrayAppendValue(entry, conflicted ? CFSTR("ConflictTrue") : CFSTR("ConflictFalse"));
        CFArrayAppendValue(*array, entry);
        CFRelease(entry);
        ++*count;
    }
    return kStatusOK;
}

+ (BOOL)commonIsPPDChoiceConflicted:(ppd_file_t*)ppd option:(const char*)option choice:(const char*)choice
{
    ppd_option_t* found = ppdFindOption(ppd, option);
    if (found == nullptr)
        return NO;
    if (ppdIsMarked(ppd, option, choice))
        return found->conflicted != 0;
    const ppd_choice_t* marked = ppdFindMarkedChoice(ppd, option);
    ppd_choice_t* asked = ppdFindChoice(found, choice);
    bool wasMarked = asked != nullptr && asked->marked;
    (void)ppdMarkOption(ppd, option, choice);
    BOOL conflicted = found->conflicted != 0;
    if (marked != nullptr && !marked->marked)
        (void)ppdMarkOption(ppd, option, marked->choice);
    // Still there: nothing was marked, or the option takes several marks at once.
    if (asked != nullptr && asked->marked && !wasMarked)
        clearMark(ppd, found, asked);
    return conflicted;
}

+ (int)commonFindPPDKeyPairsMatch:(CFArrayRef)choices option:(CFStringRef)option choice:(CFStringRef)choice
{
    if (choices == nullptr || option == nullptr || choice == nullptr)
        return -1;
    for (CFIndex i = 0; i < CFArrayGetCount(choices); ++i) {
        if (CFStringCompare(element(choices, i, kChoiceOption), option, 0) == kCFCompareEqualTo &&
            CFStringCompare(element(choices, i, kChoiceKeyword), choice, 0) == kCFCompareEqualTo)
            return (int)i;
    }
    return -1;
}

+ (void)commonReBuildMenuFromPPD:(ppd_file_t*)ppd table:(const PDEControlItem*)item
{
    const ppd_option_t* option = item != nullptr ? ppdFindOption(ppd, item->ppdKey) : nullptr;
    NSPopUpButton* popup = option != nullptr ? item->control : nil;
    if ([popup menu] == nil)
        return;
    [popup removeAllItems];
    for (SInt16 i = 0; i < option->num_choices; ++i) {
        [popup addItemWithTitle:[self textOfPPD:ppd bytes:option->choices[i].text]];
        // Choices with equal texts share one item, so the menu can be shorter than the list.
        if (i < [popup numberOfItems])
            [[popup itemAtIndex:i] setRepresentedObject:[NSString stringWithCString:option->choices[i].choice
                                                                           encoding:NSASCIIStringEncoding]];
    }
}

+ (NSStringEncoding)commonGetEncodingFromPPD:(ppd_file_t*)ppd
{
    return encodingOf(ppd).string;
}

+ (CFStringEncoding)commonGetCFStringEncodingFromPPD:(ppd_file_t*)ppd
{
    return encodingOf(ppd).cfString;
}

+ (int)commonGetDefualtValueFromPPDWithSInt32:(const PDEControlItem*)item
{
    CFStringRef defaultChoice = item != nullptr ? element(item->choices, 0, kChoiceDefault) : nullptr;
    if (defaultChoice == nullptr)
        return 0;
    CFStringRef key = CFStringCreateWithCString(kCFAllocatorDefault, item->ppdKey, kCFStringEncodingUTF8);
    if (key == nullptr)
        return 0;
    int value = [self commonGetTicketValueWithSInt32:item option:key choice:defaultChoice];
    CFRelease(key);
    return value;
}

+ (int)commonGetControlValueFromPPDWithSInt32:(const PDEControlItem*)item
{
    if (item == nullptr)
        return 0;
    switch (item->kind) {
    case PDEControlKindCheckBox:
        return checkBoxChoice(item);
    case PDEControlKindPopup:
        return (int)[item->control indexOfSelectedItem];
    default:
        return 0;
    }
}

+ (NSString*)commonGetControlValueFromPPDWithNSString:(const PDEControlItem*)item
{
    if (item == nullptr)
        return nil;
    switch (item->kind) {
    case PDEControlKindCheckBox:
        return (NSString*)element(item->choices, checkBoxChoice(item), kChoiceText);
    case PDEControlKindPopup:
        return [[item->control selectedItem] title];
    default:
        return nil;
    }
}

+ (NSString*)commonGetPPDProductName:(PMPrintSettings)settings
{
    return @"R4270";
}

+ (NSString*)textOfPPD:(ppd_file_t*)ppd bytes:(const char*)bytes
{
    if (bytes == nullptr)
        return nil;
    NSString* text = [NSString stringWithCString:bytes encoding:[self commonGetEncodingFromPPD:ppd]];
    return text != nil ? text : [NSString stringWithCString:bytes encoding:kMacRoman];
}

@end
