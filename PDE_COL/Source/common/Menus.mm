#include "common/Menus.h"

void appendItems(NSPopUpButton* popup, NSArray* titles)
{
    for (NSString* title in titles) {
        if ([popup numberOfItems] == 0) {
            [popup addItemWithTitle:title];
            continue;
        }
        auto item = (NSMenuItem*)[[popup menu] addItemWithTitle:title action:nullptr keyEquivalent:@""];
        // The marks of a menu's own items would take room in the closed pop-up.
        auto first = (NSMenuItem*)[popup itemAtIndex:0];
        [item setOnStateImage:[first onStateImage]];
        [item setMixedStateImage:[first mixedStateImage]];
    }
}
