#include "panels/AdvancedColorOptions.h"

#include "common/ControlTable.h"
#include "profiles/DriverPaths.h"
#include "profiles/PDECommon+Profiles.h"
#include "profiles/ProfileListOperations.h"

#include <cstdio>

@implementation AdvancedColorOptions

- (void)createPDEControlTable
{
    // Pop-ups carry their label's text as title, though none is ever set on them: it is the row's caption.
    // The halftones have no identifier, so that no rule can address them.
    const PDEControlItem rows[] = {
        {menu_iRGBSource, PDEControlKindPopup, "VelImageRGBSource", "RGB Source:", "Image RGB Source",
         "ImageRGBSourcePopup", kRgbSourceProfiles},
        {menu_iRGBIntent, PDEControlKindPopup, "VelImageRenderIntent", "RGB Intent:", "Image RGB Intent",
         "ImageRenderIntentPopup", kNoProfiles},
        {menu_iRGBGrayTreatment, PDEControlKindPopup, "VelImageGrayTreatment",
         "RGB Gray Treatment:", "Image RGB Gray Treatment", "ImageGrayTreatmentPopup", kNoProfiles},
        {menu_iDestinationProfile, PDEControlKindPopup, "VelImageDestinationProfile", "Destination Profile:",
         "Image Destination Profile", "ImageDestinationProfilePopup", kDestinationProfiles},
        {menu_iHalftone, PDEControlKindPopup, "VelImageHalftone", "Halftone:", "Image Halftone", kNoKey,
         kNoProfiles},
        {menu_iEdgeEnhancement, PDEControlKindPopup, "VelImageEdgeEnhance",
         "EdgeEnhance:", "Image EdgeEnhance", "ImageEdgeEnhancePopup", kNoProfiles},
        {menu_tRGBSource, PDEControlKindPopup, "VelTextRGBSource", "RGB Source:", "Text RGB Source",
         "TextRGBSourcePopup", kRgbSourceProfiles},
        {menu_tRGBIntent, PDEControlKindPopup, "VelTextRenderIntent", "RGB Intent:", "Text RGB Intent",
         "TextRenderIntentPopup", kNoProfiles},
        {menu_tRGBGrayTreatment, PDEControlKindPopup, "VelTextGrayTreatment",
         "RGB Gray Treatment:", "Text RGB Gray Treatment", "TextGrayTreatmentPopup", kNoProfiles},
        {menu_tDestinationProfile, PDEControlKindPopup, "VelTextDestinationProfile", "Destination Profile:",
         "Text Destination Profile", "TextDestinationProfilePopup", kDestinationProfiles},
        {menu_tHalftone, PDEControlKindPopup, "VelTextHalftone", "Halftone:", "Text Halftone", kNoKey,
         kNoProfiles},
        {menu_tEdgeEnhancement, PDEControlKindPopup, "VelTextEdgeEnhance", "EdgeEnhance:", "Text EdgeEnhance",
         "TextEdgeEnhancePopup", kNoProfiles},
        {menu_gRGBSource, PDEControlKindPopup, "VelGraphicsRGBSource", "RGB Source:", "Graphics RGB Source",
         "GraphicsRGBSourcePopup", kRgbSourceProfiles},
        {menu_gRGBIntent, PDEControlKindPopup, "VelGraphicsRenderIntent",
         "RGB Intent:", "Graphics RGB Intent", "GraphicsRenderIntentPopup", kNoProfiles},
        {menu_gRGBGrayTreatment, PDEControlKindPopup, "VelGraphicsGrayTreatment",
         "RGB Gray Treatment:", "Graphics RGB Gray Treatment", "GraphicsGrayTreatmentPopup", kNoProfiles},
        {menu_gDestinationProfile, PDEControlKindPopup, "VelGraphicsDestinationProfile",
         "Destination Profile:", "Graphics Destination Profile", "GraphicsDestinationProfilePopup",
         kDestinationProfiles},
        {menu_gHalftone, PDEControlKindPopup, "VelGraphicsHalftone", "Halftone:", "Graphics Halftone", kNoKey,
         kNoProfiles},
        {menu_gEdgeEnhancement, PDEControlKindPopup, "VelGraphicsEdgeEnhance",
         "EdgeEnhance:", "Graphics EdgeEnhance", "GraphicsEdgeEnhancePopup", kNoProfiles},
        {menu_sSimulationProfile, PDEControlKindPopup, "VelSimSource",
         "Simulation Profile:", "Simulation Profile", "SimulationSourcePopup", kSimulationProfiles},
        {menu_sMatchPaperColor, PDEControlKindPopup, "VelSimRenderIntent",
         "Match Paper Color:", "Match Paper Color", "SimulationRenderIntentPopup", kNoProfiles},
        {menu_sCMYKGrayTreatment, PDEControlKindPopup, "VelSimGrayTreatment",
         "CMYK Gray Treatment:", "CMYK Gray Treatment", "SimulationGrayTreatmentPopup", kNoProfiles},
        {tab_SwitchVew, PDEControlKindTab, kNoKey, "Image", nullptr, kNoKey},
        {text_iRGBSource, PDEControlKindText, kNoKey, "RGB Source:", nullptr, kNoKey},
        {text_iRGBIntent, PDEControlKindText, kNoKey, "RGB Intent:", nullptr, kNoKey},
        {text_iRGBGrayTreatment, PDEControlKindText, kNoKey, "RGB Gray Treatment:", nullptr, kNoKey},
        {text_iDestinationProfile, PDEControlKindText, kNoKey, "Destination Profile:", nullptr, kNoKey},
        {text_iHalftone, PDEControlKindText, kNoKey, "Halftone:", nullptr, kNoKey},
        {text_iEdgeEnhancement, PDEControlKindText, kNoKey, "EdgeEnhance:", nullptr, kNoKey},
        {text_tRGBSource, PDEControlKindText, kNoKey, "RGB Source:", nullptr, kNoKey},
        {text_tRGBIntent, PDEControlKindText, kNoKey, "RGB Intent:", nullptr, kNoKey},
        {text_tRGBGrayTreatment, PDEControlKindText, kNoKey, "RGB Gray Treatment:", nullptr, kNoKey},
        {text_tDestinationProfile, PDEControlKindText, kNoKey, "Destination Profile:", nullptr, kNoKey},
        {text_tHalftone, PDEControlKindText, kNoKey, "Halftone:", nullptr, kNoKey},
        {text_tEdgeEnhancement, PDEControlKindText, kNoKey, "EdgeEnhance:", nullptr, kNoKey},
        {text_gRGBSource, PDEControlKindText, kNoKey, "RGB Source:", nullptr, kNoKey},
        {text_gRGBIntent, PDEControlKindText, kNoKey, "RGB Intent:", nullptr, kNoKey},
        {text_gRGBGrayTreatment, PDEControlKindText, kNoKey, "RGB Gray Treatment:", nullptr, kNoKey},
        {text_gDestinationProfile, PDEControlKindText, kNoKey, "Destination Profile:", nullptr, kNoKey},
        {text_gHalftone, PDEControlKindText, kNoKey, "Halftone:", nullptr, kNoKey},
        {text_gEdgeEnhancement, PDEControlKindText, kNoKey, "EdgeEnhance:", nullptr, kNoKey},
        {text_sSimulationProfile, PDEControlKindText, kNoKey, "Simulation Profile:", nullptr, kNoKey},
        {text_sMatchPaperColor, PDEControlKindText, kNoKey, "Match Paper Color:", nullptr, kNoKey},
        {text_sCMYKGrayTreatment, PDEControlKindText, kNoKey, "CMYK Gray Treatment:", nullptr, kNoKey},
        {button_ManageProfile, PDEControlKindButton, kNoKey, "Management Profile", nullptr, kNoKey},
        {button_DownloadManager, PDEControlKindButton, kNoKey, "Download Manager", nullptr, kNoKey},
        {button_HideAdvancedOptions, PDEControlKindButton, kNoKey, "Hide Advanced Options", nullptr, kNoKey},
        kEndRow,
    };
    [self useRows:rows count:sizeof rows / sizeof rows[0]];
    [tab_SwitchVew selectTabViewItemAtIndex:0];
    [button_ManageProfile setEnabled:VelPListIsAdminProfile() != 0];
}

- (void)createPPDKeyNSArrayAdvance:(NSMutableArray*)array
{
    addAllKeys(array, ctrlTable);
}

- (void)createPDEItemForPPDKey
{
    [super createPDEItemForPPDKey];
    (void)[PDECommon commonAddMenuFromProfilePlist:ctrlTable];
}

- (IBAction)downloadManagerButton:(id)sender
{
    char path[128] = {};
    (void)snprintf(path, sizeof path, "%s", downloadManagerApplication().c_str());
    FSRef application;
    if (FSPathMakeRef(reinterpret_cast<const UInt8*>(path), &application, nullptr) == noErr)
        (void)LSOpenFSRef(&application, nullptr);
}

@end
