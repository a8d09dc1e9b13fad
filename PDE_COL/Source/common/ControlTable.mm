#include "common/ControlTable.h"

#include "common/PDECommon+PPD.h"

#include <cstdlib>
#include <cstring>

PDEControlItem* createControlTable(const PDEControlItem* rows, SInt16 count, ppd_file_t* ppd)
{
    auto table = static_cast<PDEControlItem*>(calloc((size_t)count, sizeof(PDEControlItem)));
    if (table == nullptr)
        return nullptr;
    memcpy(table, rows, (size_t)count * sizeof(PDEControlItem));
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        if (table[i].ppdKey != kNoKey)
            (void)[PDECommon commonGetPPDArrayForUIOption:ppd key:table[i].ppdKey array:&table[i].choices];
    }
    return table;
}

void freeControlTable(PDEControlItem* table)
{
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        if (table[i].ppdKey != kNoKey && table[i].choices != nullptr)
            CFRelease(table[i].choices);
    }
    free(table);
}

void addAllKeys(NSMutableArray* array, const PDEControlItem* table)
{
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        NSString* key = table[i].ppdKey != nullptr
                            ? [NSString stringWithCString:table[i].ppdKey encoding:NSASCIIStringEncoding]
                            : nil;
        if (key != nil)
            [array addObject:key];
    }
}
