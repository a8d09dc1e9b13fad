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
        if (hasOption(table[i]))
            (void)[PDECommon commonGetPPDArrayForUIOption:ppd key:table[i].ppdKey array:&table[i].choices];
    }
    return table;
}

void freeControlTable(PDEControlItem* table)
{
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        if (hasOption(table[i]) && table[i].choices != nullptr)
            CFRelease(table[i].choices);
    }
    free(table);
}

void addAllKeys(NSMutableArray* array, const PDEControlItem* table)
{
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        if (NSString* key = asciiText(table[i].ppdKey))
            [array addObject:key];
    }
}
