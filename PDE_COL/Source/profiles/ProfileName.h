#pragma once

#include "profiles/ProfileRecord.h"

#include <optional>
#include <string>
#include <string_view>

/// The text in a name field: up to its terminator, or all 32 bytes when it has none. Borrowed from `field`.
std::string_view nameText(const char (&field)[kProfileNameSize]);

/// Puts `text` (UTF-8) into a name field: its first 31 bytes, also when that is inside a character, and
/// zeros after it. `text` counts up to its first NUL.
void setNameText(char (&field)[kProfileNameSize], std::string_view text);

/// The text of a name field as a list file can hold it. The bytes that a cut left of its last character are
/// left out. Nothing when the rest is no UTF-8 or holds a control character.
std::optional<std::string> storableName(const char (&field)[kProfileNameSize]);
