#include "panels/AdvancedSettings.h"

#include <algorithm>

namespace {

/// Quick Color presets that dictate the settings; the item behind them is "Custom".
constexpr int kPresets = 3;

// The halftones have no identifier, so that no rule can address them.
constexpr AdvancedSetting kSettings[] = {
    {"iRGBSource", "VelImageRGBSource", "RGB Source:", "Image RGB Source", "ImageRGBSourcePopup",
     kRgbSourceProfiles},
    {"iRGBIntent", "VelImageRenderIntent", "RGB Intent:", "Image RGB Intent", "ImageRenderIntentPopup",
     kNoProfiles},
    {"iRGBGrayTreatment", "VelImageGrayTreatment", "RGB Gray Treatment:", "Image RGB Gray Treatment",
     "ImageGrayTreatmentPopup", kNoProfiles},
    {"iDestinationProfile", "VelImageDestinationProfile", "Destination Profile:", "Image Destination Profile",
     "ImageDestinationProfilePopup", kDestinationProfiles},
    {"iHalftone", "VelImageHalftone", "Halftone:", "Image Halftone", "", kNoProfiles},
    {"iEdgeEnhancement", "VelImageEdgeEnhance", "EdgeEnhance:", "Image EdgeEnhance", "ImageEdgeEnhancePopup",
     kNoProfiles},
    {"tRGBSource", "VelTextRGBSource", "RGB Source:", "Text RGB Source", "TextRGBSourcePopup",
     kRgbSourceProfiles},
    {"tRGBIntent", "VelTextRenderIntent", "RGB Intent:", "Text RGB Intent", "TextRenderIntentPopup",
     kNoProfiles},
    {"tRGBGrayTreatment", "VelTextGrayTreatment", "RGB Gray Treatment:", "Text RGB Gray Treatment",
     "TextGrayTreatmentPopup", kNoProfiles},
    {"tDestinationProfile", "VelTextDestinationProfile", "Destination Profile:", "Text Destination Profile",
     "TextDestinationProfilePopup", kDestinationProfiles},
    {"tHalftone", "VelTextHalftone", "Halftone:", "Text Halftone", "", kNoProfiles},
    {"tEdgeEnhancement", "VelTextEdgeEnhance", "EdgeEnhance:", "Text EdgeEnhance", "TextEdgeEnhancePopup",
     kNoProfiles},
    {"gRGBSource", "VelGraphicsRGBSource", "RGB Source:", "Graphics RGB Source", "GraphicsRGBSourcePopup",
     kRgbSourceProfiles},
    {"gRGBIntent", "VelGraphicsRenderIntent", "RGB Intent:", "Graphics RGB Intent",
     "GraphicsRenderIntentPopup", kNoProfiles},
    {"gRGBGrayTreatment", "VelGraphicsGrayTreatment", "RGB Gray Treatment:", "Graphics RGB Gray Treatment",
     "GraphicsGrayTreatmentPopup", kNoProfiles},
    {"gDestinationProfile", "VelGraphicsDestinationProfile", "Destination Profile:",
     "Graphics Destination Profile", "GraphicsDestinationProfilePopup", kDestinationProfiles},
    {"gHalftone", "VelGraphicsHalftone", "Halftone:", "Graphics Halftone", "", kNoProfiles},
    {"gEdgeEnhancement", "VelGraphicsEdgeEnhance", "EdgeEnhance:", "Graphics EdgeEnhance",
     "GraphicsEdgeEnhancePopup", kNoProfiles},
    {"sSimulationProfile", "VelSimSource", "Simulation Profile:", "Simulation Profile",
     "SimulationSourcePopup", kSimulationProfiles},
    {"sMatchPaperColor", "VelSimRenderIntent", "Match Paper Color:", "Match Paper Color",
     "SimulationRenderIntentPopup", kNoProfiles},
    {"sCMYKGrayTreatment", "VelSimGrayTreatment", "CMYK Gray Treatment:", "CMYK Gray Treatment",
     "SimulationGrayTreatmentPopup", kNoProfiles},
};

/// The pop-up's item for each preset.
struct PresetItems {
    std::string_view ppdKey;
    int items[kPresets];
};

constexpr PresetItems kDictated[] = {
    {"VelImageRGBSource", {1, 1, 1}},
    {"VelImageRenderIntent", {0, 0, 1}},
    {"VelImageGrayTreatment", {1, 0, 1}},
    {"VelImageDestinationProfile", {0, 0, 0}},
    {"VelImageHalftone", {1, 1, 2}},
    {"VelImageEdgeEnhance", {0, 0, 1}},
    {"VelTextRGBSource", {1, 1, 1}},
    {"VelTextRenderIntent", {1, 0, 1}},
    {"VelTextGrayTreatment", {1, 0, 1}},
    {"VelTextDestinationProfile", {0, 0, 0}},
    {"VelTextHalftone", {2, 1, 2}},
    {"VelTextEdgeEnhance", {1, 0, 1}},
    {"VelGraphicsRGBSource", {1, 1, 1}},
    {"VelGraphicsRenderIntent", {1, 0, 1}},
    {"VelGraphicsGrayTreatment", {1, 0, 1}},
    {"VelGraphicsDestinationProfile", {0, 0, 0}},
    {"VelGraphicsHalftone", {1, 1, 2}},
    {"VelGraphicsEdgeEnhance", {1, 0, 1}},
    {"VelSimSource", {0, 0, 0}},
    {"VelSimRenderIntent", {0, 0, 0}},
    {"VelSimGrayTreatment", {0, 0, 0}},
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

constexpr auto isFor(std::string_view key)
{
    return [key](const auto& row) { return row.ppdKey == key; };
}

constexpr bool isDictated(const AdvancedSetting& setting)
{
    return std::count_if(std::begin(kDictated), std::end(kDictated), isFor(setting.ppdKey)) == 1;
}

constexpr bool isASetting(const auto& row)
{
    return std::any_of(std::begin(kSettings), std::end(kSettings), isFor(row.ppdKey));
}

static_assert(std::all_of(std::begin(kSettings), std::end(kSettings), isDictated));
static_assert(std::all_of(std::begin(kDictated), std::end(kDictated), isASetting<PresetItems>));
static_assert(std::all_of(std::begin(kEconomy), std::end(kEconomy), isASetting<EconomyItem>));

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
    for (const PresetItems& row : kDictated)
        result.push_back({row.ppdKey, row.items[preset]});
    for (const EconomyItem& row : kEconomy) {
        if (economy && row.preset == preset)
            result.push_back({row.ppdKey, 0});
    }
    return result;
}
