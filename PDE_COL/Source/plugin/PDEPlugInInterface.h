#pragma once

#include "common/ClassNames.h"
#include "common/ControlItem.h"
#include "plugin/PanelProtocol.h"

/// The panel: loads the interface file when it is first needed and passes the dialog's calls on to the view
/// switcher and to PDECommon.
@interface PDEPlugInInterface : NSObject <PDEPanelProtocol>
{
    id<PDEPluginCallback> pdePluginCallbackObject;
    NSString* thePDEName;
    PDEControlItem* compTable;
    PMPrintSettings setting;
    PMPrintSession session;
    IBOutlet ColorOptions* onColorView;
    IBOutlet AdvancedColorOptions* onAdvancedView;
    IBOutlet ProfileControl* profileControl;
    IBOutlet NSView* pdeMainView;
    IBOutlet PainChangeController* painChange;
    IBOutlet PainInterface* painShareInterface;
    ppd_file_t* ppd;
    NSArray* interfaceObjects; // what the interface file made, which lives as long as the panel
}

/// Retains the callback until `terminate`.
- (id)initWithCallback:(id<PDEPluginCallback>)callback;

/// Loads the panel; does nothing when it is loaded.
- (void)myLoad;

/// Applies the preset rules to both views: the action of every control that a rule's condition names, but
/// for Quick Color. The argument is ignored.
- (IBAction)constraints:(id)sender;

/// The action of Quick Color: applies the rules to the Color Options view alone, on purpose.
- (IBAction)selectItem:(id)sender;

@end
