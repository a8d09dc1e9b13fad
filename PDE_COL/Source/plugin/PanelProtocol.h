#pragma once

#import <ApplicationServices/ApplicationServices.h>
#import <Cocoa/Cocoa.h>
#include <cups/ppd.h>

// What a print dialog and the plug-in say to each other. All messages come on the main thread.

/// The print dialog's panel type; the plug-in answers no other.
#define PDE_PRINT_DIALOG_TYPE @"BDB091F4-E57F-11D3-B5CC-0050E4603277"

/// The dialog, as the plug-in sees it. The objects stay the dialog's and outlive the panel.
@protocol PDEPluginCallback <NSObject>
- (PMPrintSettings)printSettings;
- (PMPrintSession)printSession;
/// The PPD of the session's printer; null when there is none.
- (ppd_file_t*)ppdFile;
@end

/// The principal class of the bundle.
@protocol PDEPlugInProtocol <NSObject>
- (BOOL)initWithBundle:(NSBundle*)bundle;
/// The panels for a dialog type, or nil. `host` conforms to PDEPluginCallback.
- (NSArray*)PDEPanelsForType:(NSString*)type withHostInfo:(id)host;
@end

/// A panel. Any call loads the panel when it needs to; no order is required but `terminate` last.
@protocol PDEPanelProtocol <NSObject>
- (NSView*)panelView;
- (NSString*)panelName;
- (NSString*)panelKind;
- (NSMutableArray*)supportedPPDOptionKeys;
- (void)willShow;
- (BOOL)shouldHide;
/// Controls from the PPD's defaults, then from the print settings. Always YES; `error` is never written.
- (BOOL)restoreValuesAndReturnError:(NSError**)error;
/// Controls to the print settings. Always YES; `error` is never written.
- (BOOL)saveValuesAndReturnError:(NSError**)error;
/// Item names to value texts, and the names in display order under "Summary Display Order".
- (NSMutableDictionary*)summaryInfo;
/// Lets the advanced settings follow the Quick Color preset and writes them. Always YES.
- (BOOL)shouldPrint;
- (void)PPDOptionKeyValueDidChange:(NSString*)optionKey ppdChoice:(NSString*)choice;
/// The panel is done with; either is enough, and both are one.
- (void)terminate;
- (void)printWindowWillClose:(id)sender;
@end
