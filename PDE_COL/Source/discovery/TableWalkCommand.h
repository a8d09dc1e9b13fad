#pragma once

#include <optional>

/// Has the helper walk the profile table of the printer at `agent` (a host name or dotted address, without a
/// port) and merge it into the current user's lists. The walk's exit value, see mib_walk; nothing when the
/// helper is missing or its reply has none. Blocks until the helper exits; does not throw.
std::optional<int> walkPrinterTable(const char* agent);
