#include "common/Menus.h"

void appendItems(NSPopUpButton* popup, NSArray* titles)
{
    // None is ever disabled, and the toolkit would ask about each whenever the selection changes.
    [[popup menu] setAutoenablesItems:NO];
    for (NSString* title in titles) {
        if ([popup numberOfItems] == 0) {
            [popup addItemWithTitle:title];
            continue;
        }
        // The marks of a menu's own items would take room in the closed pop-up. They come first: the menu
        // lays itself out anew whenever one of its items changes.
        NSMenuItem* item = [[NSMenuItem alloc] initWithTitle:title action:nullptr keyEquivalent:@""];
        auto first = (NSMenuItem*)[popup itemAtIndex:0];
        [item setOnStateImage:[first onStateImage]];
        [item setMixedStateImage:[first mixedStateImage]];
        [[popup menu] addItem:item];
        [item release];
    }
}
