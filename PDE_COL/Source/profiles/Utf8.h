#pragma once

#include <string_view>

/// True when `text` is well-formed UTF-8.
bool isUtf8(std::string_view text);
