#pragma once

#include <PrintingObjects.h>
#include <plugin/PanelProtocol.h>

/// The loaded plug-in bundle; it stays loaded for the life of the process.
@interface PlugIn : NSObject
{
    id<PDEPlugInProtocol> principal_;
}
/// `path` is absolute. Nil, and a reason in `error`, when it is not a bundle with a panel plug-in.
- (instancetype)initWithPath:(NSString*)path error:(NSString**)error;
- (id<PDEPlugInProtocol>)principal;
@end

/// One opening of the panel: from asking the plug-in for it to `terminate`.
@interface PanelSession : NSObject <PDEPluginCallback>
{
    PMSettingsObject* settings_;
    PMSessionObject* session_;
    NSArray* panels_;
}
/// Asks for the panels of the print dialog. The settings are shared with later sessions.
- (instancetype)initWithPlugIn:(PlugIn*)plugIn
                      settings:(PMSettingsObject*)settings
                       printer:(PMPrinterObject*)printer;
- (NSArray*)panels;
/// The first panel; nil when the plug-in gave none, and after `terminate`.
- (id<PDEPanelProtocol>)panel;
/// Whether the printer's PPD has any of the panel's options; another maker's has none.
- (BOOL)offersOptionsOf:(PMPrinterObject*)printer;
/// Takes the panel's view off the screen and lets the panel go. Later calls do nothing.
- (void)terminate;
@end
