#include "common/Menus.h"

// An item as a pop-up makes it, which takes far longer than to make one for its menu.
static NSMenuItem* patternItem()
{
    static NSPopUpButton* popup = nil;
    if (popup == nil) {
        popup = [[NSPopUpButton alloc] init];
        [popup addItemWithTitle:@""];
    }
    return (NSMenuItem*)[popup itemAtIndex:0];
}

void appendItems(NSPopUpButton* popup, NSArray* titles)
{
    // None is ever disabled, and the toolkit would ask about each whenever the selection changes.
    [[popup menu] setAutoenablesItems:NO];
    for (NSString* title in titles) {
        // The marks of a menu's own items would take room in the closed pop-up. They come first: the menu
        // lays itself out anew whenever one of its items changes.
        NSMenuItem* item = [[NSMenuItem alloc] initWithTitle:title action:nullptr keyEquivalent:@""];
        [item setOnStateImage:[patternItem() onStateImage]];
        [item setMixedStateImage:[patternItem() mixedStateImage]];
        [item setState:[popup numberOfItems] == 0];
        [[popup menu] addItem:item];
        [item release];
        if ([popup numberOfItems] == 1)
            [popup selectItemAtIndex:0];
    }
}
