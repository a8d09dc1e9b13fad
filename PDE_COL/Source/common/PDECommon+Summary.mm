#include "common/PDECommon+Summary.h"

#include "common/ControlTable.h"
#include "common/PDECommon+PPD.h"
#include "common/StatusCodes.h"

static void addEntry(NSString* name, NSString* value, NSMutableDictionary* dict, NSMutableArray* array)
{
    [dict setObject:value forKey:name];
    [array addObject:name];
}

@implementation PDECommon (Summary)

+ (int)commonGetSummaryText:(const PDEControlItem*)table
                    adddict:(NSMutableDictionary*)dict
                   addArray:(NSMutableArray*)array
{
    NSBundle* bundle = [NSBundle bundleForClass:[PDECommon class]];
    if (bundle == nil)
        return kStatusOK;
    int status = kStatusOK;
    NSString* name = nil;
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        if (table[i].summaryName == nullptr)
            continue;
        // A name that is no ASCII text leaves the row the name of the row before: kept so on purpose.
        NSString* key = [NSString stringWithCString:table[i].summaryName encoding:NSASCIIStringEncoding];
        if (key != nil)
            name = [bundle localizedStringForKey:key value:nil table:nil];
        NSString* value = [self commonGetControlValueFromPPDWithNSString:&table[i]];
        if (name != nil && value != nil)
            addEntry(name, value, dict, array);
        else
            status = kStatusBadParameter;
    }
    return status;
}

+ (int)commonGetSummaryTextQuickColor:(const char*)key
                             itemName:(NSString*)value
                              adddict:(NSMutableDictionary*)dict
                             addArray:(NSMutableArray*)array
{
    NSBundle* bundle = [NSBundle bundleForClass:[PDECommon class]];
    if (bundle == nil)
        return kStatusOK;
    NSString* name = [NSString stringWithCString:key encoding:NSASCIIStringEncoding];
    if (name != nil)
        name = [bundle localizedStringForKey:name value:nil table:nil];
    if (name == nil || value == nil)
        return kStatusBadParameter;
    addEntry(name, value, dict, array);
    return kStatusOK;
}

@end
