#pragma once

#include <string>

/// The text of the sample printer's PPD.
std::string samplePpd();

/// `text` with its only or first `from` replaced; throws when there is none, so that a test of an odd PPD
/// cannot quietly run on the good one.
std::string replaced(std::string text, const std::string& from, const std::string& to);

/// `ppd` with the option, from its opening line to its closing one, replaced by `body` (default: nothing).
std::string withOption(const std::string& ppd, const std::string& keyword, const std::string& body = "");
