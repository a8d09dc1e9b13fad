#include "common/PDECommon+ControlTable.h"

#include "common/ControlTable.h"
#include "common/PDECommon+PPD.h"
#include "common/StatusCodes.h"

#include <algorithm>
#include <cstdlib>

// Rows before the record that ends the table.
static SInt16 rowsOf(const PDEControlItem* table)
{
    SInt16 rows = 0;
    while (table != nullptr && table[rows].kind != PDEControlKindEnd)
        ++rows;
    return rows;
}

static void setTabLabels(NSTabView* tabs)
{
    NSString* keys[] = {@"Image", @"Text", @"Graphics", @"Simulation"};
    NSString* key = nil;
    for (SInt16 i = 0; i < (SInt16)[tabs numberOfTabViewItems]; ++i) {
        // A tab beyond the four shows the last of them again.
        if (i < 4)
            key = keys[i];
        [[tabs tabViewItemAtIndex:i] setLabel:localizedText(key)];
    }
}

@implementation PDECommon (ControlTable)

+ (int)commonAddPPDArray:(NSMutableArray*)array table:(const PDEControlItem*)table
{
    if (array == nil)
        return kStatusBadParameter;
    int status = kStatusOK;
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        if (!hasOption(table[i]))
            continue;
        if (NSString* key = asciiText(table[i].ppdKey))
            [array addObject:key];
        else
            status = kStatusBadParameter;
    }
    return status;
}

+ (void)commonBuildPDEItem:(PDEControlItem*)table ppdfile:(ppd_file_t*)ppd
{
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        [self commonSetControlTitleFromLocalizeString:&table[i]];
        if (table[i].kind == PDEControlKindPopup)
            [self commonReBuildMenuFromPPD:ppd table:&table[i]];
    }
}

+ (void)commonDefaultFromPPDInfo:(PDEControlItem*)table
{
    for (SInt16 i = 0; hasRow(table, i); ++i) {
        if (hasOption(table[i]))
            [self commonSetControlValueWithSInt32:&table[i]
                                            value:[self commonGetDefualtValueFromPPDWithSInt32:&table[i]]];
    }
}

+ (int)commonGetControlValueWithSInt32:(const PDEControlItem*)item
{
    if (item == nullptr)
        return 0;
    switch (item->kind) {
    case PDEControlKindCheckBox:
        return (int)[item->control intValue];
    case PDEControlKindPopup:
        return (int)[item->control indexOfSelectedItem];
    default:
        return 0;
    }
}

+ (void)commonSetControlValueWithSInt32:(const PDEControlItem*)item value:(int)value
{
    if (item == nullptr)
        return;
    if (item->kind == PDEControlKindCheckBox)
        [item->control setIntValue:value];
    // Toolkits go through the whole menu for a selection, also for the one that it has.
    else if (item->kind == PDEControlKindPopup && (int)[item->control numberOfItems] > value &&
             [item->control indexOfSelectedItem] != value)
        [item->control selectItemAtIndex:value];
}

+ (int)commonConvertToCSTValue:(const PDEControlItem*)item convalue:(int)value
{
    if (item == nullptr || item->kind != PDEControlKindPopup)
        return value;
    return value < 0 ? 0 : value + 1;
}

+ (int)commonConvertFromCSTValue:(const PDEControlItem*)item convalue:(int)value
{
    if (item == nullptr || item->kind != PDEControlKindPopup)
        return value;
    return value > 0 ? value - 1 : 0;
}

+ (void)commonSetControlTitleFromLocalizeString:(const PDEControlItem*)item
{
    NSString* title = item != nullptr && item->title != nullptr ? localizedText(asciiText(item->title)) : nil;
    if (title == nil)
        return;
    switch (item->kind) {
    case PDEControlKindText:
        [item->control setStringValue:title];
        break;
    case PDEControlKindCheckBox:
    case PDEControlKindButton:
        [item->control setTitle:title];
        break;
    case PDEControlKindTab:
        // The row's own title is looked up like any other, but the tabs have labels of their own.
        setTabLabels(item->control);
        break;
    default:
        break;
    }
}

+ (void)commonSetControlTitleFromPPD:(const PDEControlItem*)item ppdfile:(ppd_file_t*)ppd
{
    const ppd_option_t* option = item != nullptr ? ppdFindOption(ppd, item->ppdKey) : nullptr;
    if (option == nullptr)
        return;
    (void)[self commonGetTextFromPPDBytes:option->text encoding:[self commonGetEncodingFromPPD:ppd]];
    (void)localizedText(asciiText(item->ppdKey));
}

+ (PDEControlItem*)commonControlTableCompound:(PDEControlItem* const*)tables count:(int)count
{
    size_t rows = 0;
    for (int i = 0; i < count; ++i)
        rows += (size_t)rowsOf(tables[i]);
    auto compound = static_cast<PDEControlItem*>(calloc(rows + 1, sizeof(PDEControlItem)));
    if (compound == nullptr)
        return nullptr;
    PDEControlItem* next = compound;
    for (int i = 0; i < count; ++i)
        next = std::copy_n(tables[i], rowsOf(tables[i]), next);
    *next = kEndRow;
    return compound;
}

@end
