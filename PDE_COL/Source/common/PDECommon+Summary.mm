#include "common/PDECommon+Summary.h"

#include "common/ControlTable.h"
#include "common/PDECommon+PPD.h"
#include "common/StatusCodes.h"

static int addEntry(NSString* name, NSString* value, NSMutableDictionary* dict, NSMutableArray* array)
{
    if (name == nil || value == nil)
        return kStatusBadParameter;
    [dict setObject:value forKey:name];
    [array addObject:name];
    return kStatusOK;
}

@implementation PDECommon (Summary)

+ (int)commonGetSummaryText:(const PDEControlItem*)table
                    adddict:(NSMutableDictionary*)dict
                   addArray:(NSMutableArray*)array
{
    int status = kStatusOK;
    NSString* name = nil;
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        if (table[i].summaryName == nullptr)
            continue;
        // A name that is no ASCII text leaves the row the name of the row before: kept so on purpose.
        if (NSString* key = asciiText(table[i].summaryName))
            name = localizedText(key);
        NSString* value = [self commonGetControlValueFromPPDWithNSString:&table[i]];
        if (addEntry(name, value, dict, array) != kStatusOK)
            status = kStatusBadParameter;
    }
    return status;
}

+ (int)commonGetSummaryTextQuickColor:(const char*)key
                             itemName:(NSString*)value
                              adddict:(NSMutableDictionary*)dict
                             addArray:(NSMutableArray*)array
{
    return addEntry(localizedText(asciiText(key)), value, dict, array);
}

@end
