#pragma once

#include "common/ControlItem.h"
#include "plugin/PanelProtocol.h"

#include <PrintingObjects.h>
#include <string>

/// The real bundle's panel on a PPD, driven in this process the way a print dialog does it.
class PanelHarness {
public:
    /// A panel on the PPD with that text (default: the sample printer's) and these print settings.
    explicit PanelHarness(const std::string& ppd = "", NSDictionary* settings = nil,
                          NSString* queue = @"Test_Queue");
    ~PanelHarness();
    PanelHarness(const PanelHarness&) = delete;
    PanelHarness& operator=(const PanelHarness&) = delete;

    id<PDEPanelProtocol> panel() const { return panel_; }
    /// The bundle's principal class; nil, with a failed expectation, when the bundle does not load.
    static Class principalClass();

    /// An outlet of the panel or of its views, by name.
    id outlet(const char* name) const;
    NSPopUpButton* popup(const char* name) const { return outlet(name); }
    bool enabled(const char* name) const { return [outlet(name) isEnabled]; }
    /// Selects as a user does: selection, then the control's action.
    void choose(const char* name, NSInteger index) const;
    void check(const char* name, int state) const;

    /// The table of the Color Options view, or of the advanced one.
    PDEControlItem* colorTable() const;
    PDEControlItem* advancedTable() const;

    NSDictionary* settings() const { return [settings_ values]; }
    NSDictionary* queueSettings() const;

private:
    PMPrinterObject* printer_ = nil;
    PMSessionObject* session_ = nil;
    PMSettingsObject* settings_ = nil;
    id callback_ = nil;
    id<PDEPanelProtocol> panel_ = nil;
};
