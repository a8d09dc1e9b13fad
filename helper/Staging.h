#pragma once

#include "ListFolder.h"

#include <optional>
#include <string>
#include <string_view>

// A list that is being written, piece by piece, in a file of its own until it is complete. The file belongs
// to one user and one calling process, known by its id and its start time, so that two dialogs never mix.

/// Writes that one user can have under way at once, in different processes.
inline constexpr int kMostWrites = 16;

/// The staging file's name for the calling user and `process`: the helper's parent, or itself for a file of
/// its own. Empty when the process cannot be identified. Asked inside a RootScope.
std::optional<std::string> stagingName(pid_t process);

/// Adds a piece. One that begins with "<?xml" begins a new write and removes what dead writes left behind;
/// any other is refused unless a write has begun. When it fails the write is over: its file is removed.
Outcome stagePiece(const Account& account, std::string_view piece);
