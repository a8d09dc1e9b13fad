#pragma once

#include "support/Sandbox.h"

#include <stdexcept>

/// The PPD of the sample printer.
inline constexpr char kPpd[] = PDE_SOURCE_DIR "/printer/R4270.ppd";

/// `text` with its only or first `from` replaced; throws when there is none, so that a test of an odd PPD
/// cannot quietly run on the good one.
inline std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    size_t at = text.find(from);
    if (at == std::string::npos)
        throw std::invalid_argument("not in the text: " + from);
    return text.replace(at, from.size(), to);
}
