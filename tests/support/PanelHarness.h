#pragma once

#include "../bench/HostedPanel.h"
#include "common/ControlItem.h"

@protocol HarnessTables
- (PDEControlItem*)getControlData;
@end

/// The real bundle's panel on the sample printer, with its controls at hand.
class PanelHarness : public HostedPanel {
public:
    static Class principalClass()
    {
        return [[NSBundle bundleWithPath:@PDE_BUILD_DIR "/R4270.plugin"] principalClass];
    }

    /// An outlet of the panel or of its views, by name.
    id outlet(const char* name) const
    {
        NSString* key = [NSString stringWithUTF8String:name];
        for (NSString* view in @[ @"onColorView", @"onAdvancedView" ])
            if (object_getInstanceVariable(part(view), name, nullptr) != nullptr)
                return [part(view) valueForKey:key];
        return part(key);
    }
    bool enabled(const char* name) const { return [outlet(name) isEnabled]; }
    /// Selects as a user does: selection, then the control's action.
    void choose(const char* name, NSInteger index) const
    {
        NSPopUpButton* popup = outlet(name);
        [popup selectItemAtIndex:index];
        [popup sendAction:[popup action] to:[popup target]];
    }

    PDEControlItem* colorTable() const { return [part(@"onColorView") getControlData]; }
    PDEControlItem* advancedTable() const { return [part(@"onAdvancedView") getControlData]; }
};
