#pragma once

#include <CoreServices/CoreServices.h>

/// Results of PDECommon's methods. Most callers ignore them: nothing here is shown to the user.
enum : OSStatus {
    kStatusOK = 0,
    kStatusBadParameter = -50,
    kStatusNoMemory = -108,
    kStatusListNotCreated = -30870,
    kStatusNoSuchOption = -30888,
    kStatusBadSessionData = -30889,
};
