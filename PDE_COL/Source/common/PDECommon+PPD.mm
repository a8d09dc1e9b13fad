#include "common/PDECommon+PPD.h"

#include "common/ControlTable.h"
#include "common/Menus.h"
#include "common/PDECommon+ControlTable.h"
#include "common/PDECommon+Ticket.h"
#include "common/StatusCodes.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>

static const NSStringEncoding kMacRoman = (NSStringEncoding)30;

// Bytes that a character of UTF-8 can lack of its four.
static const size_t kLongestCutCharacter = 3;

struct EncodingName {
    const char* name;
    NSStringEncoding string;
    CFStringEncoding cfString;
};

static const EncodingName kEncodings[] = {
    {"ISOLatin1", NSISOLatin1StringEncoding, kCFStringEncodingISOLatin1},
    {"WindowsANSI", NSWindowsCP1252StringEncoding, kCFStringEncodingWindowsLatin1},
    {"JIS83-RKSJ", NSShiftJISStringEncoding, kCFStringEncodingShiftJIS},
    {"UTF-8", NSUTF8StringEncoding, kCFStringEncodingUTF8},
    {"UTF8", NSUTF8StringEncoding, kCFStringEncodingUTF8},
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

static bool isConstrained(ppd_file_t* ppd, const char* option)
{
    return ppdFindAttr(ppd, "cupsUIConstraints", nullptr) != nullptr ||
           std::any_of(ppd->consts, ppd->consts + ppd->num_consts, [option](const ppd_const_t& constraint) {
               return strcasecmp(constraint.option1, option) == 0 ||
                      strcasecmp(constraint.option2, option) == 0;
           });
}

// Index of the choice that a check box stands for, -1 when the PPD lacks it.
static int checkBoxChoice(const PDEControlItem* item)
{
    NSString* key = asciiText(item->ppdKey);
    if (key == nil)
        return 0;
    bool on = (SInt16)[item->control intValue] != 0;
    return [PDECommon commonFindPPDKeyPairsMatch:choicesOf(*item) option:key choice:on ? @"True" : @"False"];
}

@implementation PDECommon (PPD)

+ (int)commonGetPPDArrayForUIOption:(ppd_file_t*)ppd key:(const char*)key array:(CFMutableArrayRef*)array
{
    if (ppdFindOption(ppd, key) == nullptr)
        return kStatusNoSuchOption;
    *array = (CFMutableArrayRef)[[NSMutableArray alloc] init];
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
    auto encoding = (NSStringEncoding)CFStringConvertEncodingToNSStringEncoding(
        [self commonGetCFStringEncodingFromPPD:ppd]);
    const ppd_option_t* option = ppdFindOption(ppd, key);
    if (*array == nullptr || option == nullptr)
        return kStatusOK;
    for (int i = 0; i < option->num_choices; ++i) {
        const ppd_choice_t& choice = option->choices[i];
        BOOL conflicted = [self commonIsPPDChoiceConflicted:ppd option:option->keyword choice:choice.choice];
        NSMutableArray* entry = [NSMutableArray array];
        for (const char* text : {option->keyword, option->defchoice, choice.choice, choice.text})
            [entry addObject:[self commonGetTextFromPPDBytes:text encoding:encoding]];
        [entry addObject:conflicted ? @"ConflictTrue" : @"ConflictFalse"];
        [(NSMutableArray*)*array addObject:entry];
        ++*count;
    }
    return kStatusOK;
}

+ (BOOL)commonIsPPDChoiceConflicted:(ppd_file_t*)ppd option:(const char*)option choice:(const char*)choice
{
    ppd_option_t* found = ppdFindOption(ppd, option);
    // To mark a choice goes through all constraints: not for an option that is in none.
    if (found == nullptr || !isConstrained(ppd, option))
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

+ (int)commonFindPPDKeyPairsMatch:(NSArray*)choices option:(NSString*)option choice:(NSString*)choice
{
    int index = 0;
    for (NSArray* entry in choices) {
        if ([[entry objectAtIndex:kChoiceOption] isEqual:option] &&
            [[entry objectAtIndex:kChoiceKeyword] isEqual:choice])
            return index;
        ++index;
    }
    return -1;
}

+ (void)commonReBuildMenuFromPPD:(ppd_file_t*)ppd table:(const PDEControlItem*)item
{
    const ppd_option_t* option = item != nullptr ? ppdFindOption(ppd, item->ppdKey) : nullptr;
    NSPopUpButton* popup = option != nullptr ? item->control : nil;
    if ([popup menu] == nil)
        return;
    NSStringEncoding encoding = [self commonGetEncodingFromPPD:ppd];
    NSMutableArray* titles = [NSMutableArray array];
    for (int i = 0; i < option->num_choices; ++i)
        [titles addObject:[self commonGetTextFromPPDBytes:option->choices[i].text encoding:encoding]];
    [popup removeAllItems];
    appendItems(popup, titles);
    for (int i = 0; i < option->num_choices; ++i)
        [[popup itemAtIndex:i] setRepresentedObject:asciiText(option->choices[i].choice)];
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
    NSArray* first =
        item != nullptr && [choicesOf(*item) count] > 0 ? [choicesOf(*item) objectAtIndex:0] : nil;
    NSString* key = first != nil ? asciiText(item->ppdKey) : nil;
    if (key == nil)
        return 0;
    return [self commonGetTicketValueWithSInt32:item option:key choice:[first objectAtIndex:kChoiceDefault]];
}

+ (int)commonGetControlValueFromPPDWithSInt32:(const PDEControlItem*)item
{
    bool isCheckBox = item != nullptr && item->kind == PDEControlKindCheckBox;
    return isCheckBox ? checkBoxChoice(item) : [self commonGetControlValueWithSInt32:item];
}

+ (NSString*)commonGetControlValueFromPPDWithNSString:(const PDEControlItem*)item
{
    if (item == nullptr)
        return nil;
    if (item->kind == PDEControlKindPopup)
        return [[item->control selectedItem] title];
    int index = item->kind == PDEControlKindCheckBox ? checkBoxChoice(item) : -1;
    return index >= 0 ? [[choicesOf(*item) objectAtIndex:(NSUInteger)index] objectAtIndex:kChoiceText] : nil;
}

+ (NSString*)commonGetPPDProductName:(PMPrintSettings)settings
{
    return @"R4270";
}

+ (NSString*)commonGetTextFromPPDBytes:(const char*)bytes encoding:(NSStringEncoding)encoding
{
    size_t length = strlen(bytes);
    // libcups cuts a longer text at this length, also inside a character, whose bytes are then left out.
    size_t shortest = length == PPD_MAX_TEXT - 1 ? length - kLongestCutCharacter : length;
    NSString* text = nil;
    for (size_t n = length; text == nil && n >= shortest; --n)
        text = [[[NSString alloc] initWithBytes:bytes length:n encoding:encoding] autorelease];
    // Mac OS Roman knows all bytes: neither a menu nor a choice list has room for a missing string.
    return text != nil ? text : [NSString stringWithCString:bytes encoding:kMacRoman];
}

@end
