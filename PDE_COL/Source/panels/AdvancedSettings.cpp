#include "panels/AdvancedSettings.h"

namespace {

/// Quick Color presets that dictate the settings; the item behind them is "Custom".
constexpr int kPresets = 3;

// The halftones have no identifier, so that no rule can address them.
constexpr AdvancedSetting kSettings[] = {
    {"iRGBSource", "VelImageRGBSource", "RGB Source:", "Image RGB Source", "ImageRGBSourcePopup",
     kRgbSourceProfiles, 1, 1, 1},
    {"iRGBIntent", "VelImageRenderIntent", "RGB Intent:", "Image RGB Intent", "ImageRenderIntentPopup",
     kNoProfiles, 0, 0, 1},
    {"iRGBGrayTreatment", "VelImageGrayTreatment", "RGB Gray Treatment:", "Image RGB Gray Treatment",
     "ImageGrayTreatmentPopup", kNoProfiles, 1, 0, 1},
    {"iDestinationProfile", "VelImageDestinationProfile", "Destination Profile:", "Image Destination Profile",
     "ImageDestinationProfilePopup", kDestinationProfiles, 0, 0, 0},
    {"iHalftone", "VelImageHalftone", "Halftone:", "Image Halftone", "", kNoProfiles, 1, 1, 2},
    {"iEdgeEnhancement", "VelImageEdgeEnhance", "EdgeEnhance:", "Image EdgeEnhance", "ImageEdgeEnhancePopup",
     kNoProfiles, 0, 0, 1},
    {"tRGBSource", "VelTextRGBSource", "RGB Source:", "Text RGB Source", "TextRGBSourcePopup",
     kRgbSourceProfiles, 1, 1, 1},
    {"tRGBIntent", "VelTextRenderIntent", "RGB Intent:", "Text RGB Intent", "TextRenderIntentPopup",
     kNoProfiles, 1, 0, 1},
    {"tRGBGrayTreatment", "VelTextGrayTreatment", "RGB Gray Treatment:", "Text RGB Gray Treatment",
     "TextGrayTreatmentPopup", kNoProfiles, 1, 0, 1},
    {"tDestinationProfile", "VelTextDestinationProfile", "Destination Profile:", "Text Destination Profile",
     "TextDestinationProfilePopup", kDestinationProfiles, 0, 0, 0},
    {"tHalftone", "VelTextHalftone", "Halftone:", "Text Halftone", "", kNoProfiles, 2, 1, 2},
    {"tEdgeEnhancement", "VelTextEdgeEnhance", "EdgeEnhance:", "Text EdgeEnhance", "TextEdgeEnhancePopup",
     kNoProfiles, 1, 0, 1},
    {"gRGBSource", "VelGraphicsRGBSource", "RGB Source:", "Graphics RGB Source", "GraphicsRGBSourcePopup",
     kRgbSourceProfiles, 1, 1, 1},
    {"gRGBIntent", "VelGraphicsRenderIntent", "RGB Intent:", "Graphics RGB Intent",
     "GraphicsRenderIntentPopup", kNoProfiles, 1, 0, 1},
    {"gRGBGrayTreatment", "VelGraphicsGrayTreatment", "RGB Gray Treatment:", "Graphics RGB Gray Treatment",
     "GraphicsGrayTreatmentPopup", kNoProfiles, 1, 0, 1},
    {"gDestinationProfile", "VelGraphicsDestinationProfile", "Destination Profile:",
     "Graphics Destination Profile", "GraphicsDestinationProfilePopup", kDestinationProfiles, 0, 0, 0},
    {"gHalftone", "VelGraphicsHalftone", "Halftone:", "Graphics Halftone", "", kNoProfiles, 1, 1, 2},
    {"gEdgeEnhancement", "VelGraphicsEdgeEnhance", "EdgeEnhance:", "Graphics EdgeEnhance",
     "GraphicsEdgeEnhancePopup", kNoProfiles, 1, 0, 1},
    {"sSimulationProfile", "VelSimSource", "Simulation Profile:", "Simulation Profile",
     "SimulationSourcePopup", kSimulationProfiles, 0, 0, 0},
    {"sMatchPaperColor", "VelSimRenderIntent", "Match Paper Color:", "Match Paper Color",
     "SimulationRenderIntentPopup", kNoProfiles, 0, 0, 0},
    {"sCMYKGrayTreatment", "VelSimGrayTreatment", "CMYK Gray Treatment:", "CMYK Gray Treatment",
     "SimulationGrayTreatmentPopup", kNoProfiles, 0, 0, 0},
};

/// Economy mode sets these back to item 0. The edges of text are never among them.
struct EconomyItem {
    std::string_view ppdKey;
    int preset;
};

constexpr EconomyItem kEconomy[] = {
    {"VelGraphicsEdgeEnhance", 0},
    {"VelImageEdgeEnhance", 2},
    {"VelGraphicsEdgeEnhance", 2},
};

} // namespace

std::span<const AdvancedSetting> advancedSettings()
{
    return kSettings;
}

std::vector<DictatedItem> dictatedItems(int preset, bool economy)
{
    std::vector<DictatedItem> result;
    if (preset < 0 || preset >= kPresets)
        return result;
    for (const AdvancedSetting& setting : kSettings) {
        const int items[kPresets] = {setting.item0, setting.item1, setting.item2};
        result.push_back({setting.ppdKey, items[preset]});
    }
    for (const EconomyItem& item : kEconomy) {
        if (economy && item.preset == preset)
            result.push_back({item.ppdKey, 0});
    }
    return result;
}
