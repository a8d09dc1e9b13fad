#pragma once

#include "profiles/ProfileRecord.h"

#include <optional>
#include <string>
#include <string_view>

/// The folder on the printer where profiles of this location are, ending in "/"; empty for a location that
/// is neither kOnDisk nor kOnCard.
std::string_view printerFolder(int32_t location);

/// A profile's full path on the printer: the folder of its location, then its file name.
std::string printerPath(const ProfileRecord& record);

/// The form in which the print settings hold a path: each byte becomes two characters, its high and then
/// its low four bits, each added to "0". Not hexadecimal: above 9 come ":;<=>?".
std::string encodePrinterPath(std::string_view path);

/// The inverse. Nothing when `coded` is not ASCII, does not fit 1024 bytes with a terminator, or does not
/// decode to UTF-8. A last character without a partner is ignored.
std::optional<std::string> decodePrinterPath(std::string_view coded);
