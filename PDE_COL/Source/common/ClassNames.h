#pragma once

// Every class of the plug-in carries a suffix of its own, because classes of all plug-ins loaded into one
// print dialog share one name space. The sources use the short names.

#define PDE_CLASS(name) name##_5C1E9A20_6B4D_4F3A_9E21_3D7B8C0F4A16
#define PDE_DECLARE_CLASS(name)                                                                              \
    @class PDE_CLASS(name);                                                                                  \
    @compatibility_alias name PDE_CLASS(name)

PDE_DECLARE_CLASS(PDEPlugIn);
PDE_DECLARE_CLASS(PDEPlugInInterface);
PDE_DECLARE_CLASS(MainView);
PDE_DECLARE_CLASS(PainChangeController);
PDE_DECLARE_CLASS(PainInterface);
PDE_DECLARE_CLASS(PDECommon);
PDE_DECLARE_CLASS(ControlTableView);
PDE_DECLARE_CLASS(ColorOptions);
PDE_DECLARE_CLASS(AdvancedColorOptions);
PDE_DECLARE_CLASS(ProfileControl);
PDE_DECLARE_CLASS(ProfileTableView);
PDE_DECLARE_CLASS(VelTextField);
PDE_DECLARE_CLASS(IconedCell);
