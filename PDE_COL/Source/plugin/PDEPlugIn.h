#pragma once

#include "common/ClassNames.h"
#include "plugin/PanelProtocol.h"

/// The plug-in's bundle, retained; set by the first PDEPlugIn, for the life of the process.
extern NSBundle* pluginBundle;

/// The principal class: hands the print dialog its one panel.
@interface PDEPlugIn : NSObject <PDEPlugInProtocol>
@end
