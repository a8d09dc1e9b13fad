#pragma once

#include "plugin/PanelProtocol.h"

#include <PrintingObjects.h>
#include <filesystem>

/// The bundle of this build and a panel of it, with print settings of its own, as a print dialog makes one.
class HostedPanel {
public:
    /// On a printer with that PPD. Ends the program when it or the bundle cannot be loaded.
    explicit HostedPanel(const std::filesystem::path& ppd = PDE_SOURCE_DIR "/printer/R4270.ppd");
    ~HostedPanel();
    HostedPanel(const HostedPanel&) = delete;
    HostedPanel& operator=(const HostedPanel&) = delete;

    id<PDEPanelProtocol> panel() const { return panel_; }
    /// What the panel keeps under that name: its views and their controllers.
    id part(NSString* name) const { return [(NSObject*)panel_ valueForKey:name]; }
    PMSettingsObject* settings() const { return settings_; }

private:
    PMPrinterObject* printer_;
    PMSessionObject* session_;
    PMSettingsObject* settings_;
    id dialog_;
    id<PDEPanelProtocol> panel_;
};
