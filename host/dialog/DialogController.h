#pragma once

#include "CupsPrinting.h"
#include "DialogWindow.h"
#include "Options.h"
#include "PanelSession.h"
#include "PaperPage.h"
#include "Presets.h"
#include "SummaryView.h"
#include <map>
#include <string>

/// The pages, as the window's switch lists them.
enum DialogPage : NSInteger { kPanelPage, kPaperPage, kSummaryPage };

/// The print dialog: one printer, one set of print settings, and the panel that edits them. A person drives
/// it through the window, a script through the messages below.
@interface DialogController : NSObject
{
    Options options_;
    std::string queue_; ///< where Print sends jobs; empty for a printer that is only a PPD
    std::optional<std::vector<PrintQueue>> queues_; ///< as last listed; nothing when the server was silent
    PlugIn* plugIn_;
    PMSettingsObject* settings_;
    PMPrinterObject* printer_;
    PanelSession* session_;
    DialogWindow* window_;
    PaperPage* paper_; ///< nil until it is first shown for this printer
    SummaryView* summary_;
    Presets* presets_;    ///< those of the printer's model
    Presets* remembered_; ///< what each printer was last used with
    NSString* preset_;    ///< the chosen one's name
}
/// Loads the plug-in, the printer and the settings, and shows the window. Nil, and a reason in `error`, when
/// one of them cannot be had.
- (instancetype)initWithOptions:(const Options&)options error:(NSString**)error;
/// Opens the panel as a person expects it, restored and shown, soon after the window itself is on screen.
- (void)showPanel;
- (DialogWindow*)window;

/// Closes an open panel and asks the plug-in for a new one. The number of panels.
- (NSUInteger)openPanel;
/// Nil while none is open.
- (id<PDEPanelProtocol>)panel;
- (PlugIn*)plugIn;
/// Puts the panel's view into the window and gives it.
- (NSView*)showPanelView;
- (void)showPage:(DialogPage)page;
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
/// With the settings as they are.
- (PrintJob)printJob;
/// What is to be printed; empty without files.
- (NSString*)jobTitle;
- (NSString*)windowTitle;

/// The window that a person has in front.
- (NSWindow*)frontWindow;
@end

/// The list of printers, and going from one to another.
@interface DialogController (Printers)
/// The printer that the command line names; for a person who names none the one to begin with.
- (PMPrinterObject*)newFirstPrinterWithError:(NSString**)error;
/// Asks the server for its queues and lists them; a queue that is chosen stays in the list.
- (void)listPrinters;
/// Why the chosen queue cannot take a job now; nil when it can.
- (NSString*)printerProblem;
- (void)printerChosen:(id)sender;
@end

/// What is chosen for the printer, and keeping it.
@interface DialogController (Choices)
/// Copies and pages, from the window into the settings and back.
- (void)takeCopies;
- (void)showCopies;
/// The page "Paper & Finishing", with what the settings hold for the printer.
- (PaperPage*)paperPage;
- (void)paperChosen:(id)sender;
/// Puts the printer's choices at the top level of the settings, where a job takes them, or takes them away.
- (void)putUpChoices;
- (void)takeDownChoices;
/// What the printer was last used with, where the settings hold nothing for it; only for a person.
- (void)recallChoices;
- (void)rememberChoices;
- (void)listPresetsAndSelect:(NSString*)name;
- (void)presetChosen:(id)sender;
/// Writes the panel's choices into the settings and says under the page which of all do not go together. What
/// it says; "" for nothing.
- (NSString*)noteConflict;
@end

/// What the other controls do.
@interface DialogController (Actions) <DialogActions>
@end
