#pragma once

#include "CupsPrinting.h"
#include "DialogWindow.h"
#include "Options.h"
#include "PanelSession.h"
#include "Presets.h"
#include "SummaryView.h"
#include <map>
#include <string>

/// The print dialog: one printer, one set of print settings, and the panel that edits them. A person drives
/// it through the window, a script through the messages below.
@interface DialogController : NSObject
{
    Options options_;
    std::string queue_; ///< where Print sends jobs; empty for a printer that is only a PPD
    PlugIn* plugIn_;
    PMSettingsObject* settings_;
    PMPrinterObject* printer_;
    PanelSession* session_;
    DialogWindow* window_;
    SummaryView* summary_;
    Presets* presets_;
    NSString* preset_; ///< the chosen one's name
}
/// Loads the plug-in, the printer and the settings, and shows the window. Nil, and a reason in `error`, when
/// one of them cannot be had.
- (instancetype)initWithOptions:(const Options&)options error:(NSString**)error;
/// Opens the panel as a person expects it: restored and shown.
- (void)showPanel;

/// Closes an open panel and asks the plug-in for a new one. The number of panels.
- (NSUInteger)openPanel;
/// Nil while none is open.
- (id<PDEPanelProtocol>)panel;
- (PlugIn*)plugIn;
/// Puts the panel's view into the window and gives it.
- (NSView*)showPanelView;
/// 0 the panel, 1 the summary.
- (void)showPageAtIndex:(NSInteger)index;
/// Shows the panel when the window has no page yet.
- (void)showSomePage;
- (void)terminatePanel;

- (PMSettingsObject*)settings;
/// Replaces the print settings. NO, and a reason in `error`, when the file cannot be read.
- (BOOL)loadSettings:(NSString*)path error:(NSString**)error;
/// Writes them back to where they were read. NO when they cannot be written.
- (BOOL)writeSettings;
/// Every string at the top level of the print settings, by name.
- (std::map<std::string, std::string>)jobOptions;

/// What the dialog says to the panel before printing; the panel is then closed.
- (void)finishPanelForPrinting;
/// Submits the job. For a printer that is only a PPD nothing is sent: job 0 and no error.
- (JobResult)submitJob;

/// The window that a person has in front.
- (NSWindow*)frontWindow;

// For the controller's actions.

/// Nil, and a reason in `error`, when there is no such printer or its PPD cannot be opened.
- (PMPrinterObject*)newPrinterWithError:(NSString**)error;
/// False for a printer with another maker's PPD.
- (BOOL)printerHasPanelOptions;
/// Copies and pages, from the window into the settings and back.
- (void)takeCopies;
- (void)showCopies;
/// What is to be printed; empty without files.
- (NSString*)jobTitle;
- (NSString*)windowTitle;
@end

/// What the window's controls do, and the lists in them.
@interface DialogController (Actions) <DialogActions>
- (void)listPrinters;
- (void)listPresetsAndSelect:(NSString*)name;
@end
