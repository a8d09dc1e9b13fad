#include "panels/AdvancedColorOptions.h"

#include "common/ControlTable.h"
#include "common/PDECommon+ControlTable.h"
#include "common/PDECommon+Summary.h"
#include "panels/AdvancedSettings.h"
#include "profiles/DriverPaths.h"
#include "profiles/PDECommon+Profiles.h"
#include "profiles/ProfileListOperations.h"

#include <cstdio>
#include <vector>

@implementation AdvancedColorOptions

- (id)outlet:(const char*)prefix of:(const AdvancedSetting&)row
{
    return [self valueForKey:[NSString stringWithFormat:@"%s%s", prefix, row.outlet]];
}

- (void)createPDEControlTable
{
    std::vector<PDEControlItem> rows;
    // Pop-ups carry their label's text as title, though none is ever set on them: it is the row's caption.
    for (const AdvancedSetting& row : advancedSettings())
        rows.push_back({[self outlet:"menu_" of:row], PDEControlKindPopup, row.ppdKey, row.caption,
                        row.summaryName, row.identifier, row.profiles});
    rows.push_back({tab_SwitchVew, PDEControlKindTab, kNoKey, "Image", nullptr, kNoKey});
    for (const AdvancedSetting& row : advancedSettings())
        rows.push_back(
            {[self outlet:"text_" of:row], PDEControlKindText, kNoKey, row.caption, nullptr, kNoKey});
    rows.insert(
        rows.end(),
        {
            {button_ManageProfile, PDEControlKindButton, kNoKey, "Management Profile", nullptr, kNoKey},
            {button_DownloadManager, PDEControlKindButton, kNoKey, "Download Manager", nullptr, kNoKey},
            {button_HideAdvancedOptions, PDEControlKindButton, kNoKey, "Hide Advanced Options", nullptr,
             kNoKey},
            kEndRow,
        });
    [self useRows:rows.data() count:(SInt16)rows.size()];
    [tab_SwitchVew selectTabViewItemAtIndex:0];
    [button_ManageProfile setEnabled:VelPListIsAdminProfile() != 0];
}

- (void)createPPDKeyNSArrayAdvance:(NSMutableArray*)array
{
    addAllKeys(array, ctrlTable);
}

- (void)createPDEItemForPPDKey
{
    [super createPDEItemForPPDKey];
    (void)[PDECommon commonAddMenuFromProfilePlist:ctrlTable];
}

- (const PDEControlItem*)rowOf:(const DictatedItem&)dictated
{
    for (SInt16 i = 0; hasRow(ctrlTable, i); ++i) {
        if (ctrlTable[i].ppdKey == dictated.ppdKey)
            return &ctrlTable[i];
    }
    return nullptr;
}

- (void)changeItemAccodingQuickColor:(int)quickColor Eco:(int)eco
{
    for (const DictatedItem& dictated : dictatedItems((SInt16)quickColor, (SInt16)eco != 0))
        [PDECommon commonSetControlValueWithSInt32:[self rowOf:dictated] value:dictated.item];
}

- (void)getSummaryItemAccodingQuickColor:(int)quickColor
                                     Eco:(int)eco
                             summaryDict:(NSMutableDictionary*)dict
                                addArray:(NSMutableArray*)array
{
    // Economy mode replaces values that are already there and names them twice in the order: kept so.
    for (const DictatedItem& dictated : dictatedItems((SInt16)quickColor, (SInt16)eco != 0)) {
        const PDEControlItem* row = [self rowOf:dictated];
        if (row == nullptr || dictated.item >= [row->control numberOfItems])
            continue;
        (void)[PDECommon commonGetSummaryTextQuickColor:row->summaryName
                                               itemName:[row->control itemTitleAtIndex:dictated.item]
                                                adddict:dict
                                               addArray:array];
    }
}

- (IBAction)downloadManagerButton:(id)sender
{
    char path[128] = {};
    (void)snprintf(path, sizeof path, "%s", downloadManagerApplication().c_str());
    FSRef application;
    if (FSPathMakeRef(reinterpret_cast<const UInt8*>(path), &application, nullptr) == noErr)
        (void)LSOpenFSRef(&application, nullptr);
}

@end
