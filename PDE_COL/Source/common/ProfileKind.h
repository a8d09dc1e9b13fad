#pragma once

#include <cstdint>

/// Which profile list adds items to a pop-up.
enum ProfileKind : int16_t {
    kNoProfiles = 0,
    kRgbSourceProfiles = 1,
    kDestinationProfiles = 2,
    kSimulationProfiles = 3,
};
