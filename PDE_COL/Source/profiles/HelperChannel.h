#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Each command is a process of its own. All calls block until the helper exits, without a time limit. None
// throws or raises; they work whatever the host does with SIGCHLD, and leave neither process nor descriptor.

/// Runs the helper with `arguments` (the command first) and gives all that it printed. Nothing when the
/// helper is missing (no process is started then) or could not be started, or when the reply is not UTF-8
/// or longer than 1 MiB. How the helper exited does not count.
std::optional<std::string> helperReply(const std::vector<std::string>& arguments);

/// From now on, what the helper says on standard error goes to this process's: for a program that is used at
/// a terminal. Without this call it is dropped, since a panel must not write into the log of its host.
void passHelperMessages();

/// Runs a command whose reply carries a value: what follows "COMMAND" and `ending` in it, wherever that is,
/// to the end of the line. Nothing when it is not there.
std::optional<std::string> helperValue(const std::vector<std::string>& arguments, const char* ending);

/// Runs a command; true when the reply holds "COMMAND=TRUE" anywhere.
bool helperConfirms(const std::vector<std::string>& arguments);

/// Lets the helper walk the profile table of the printer at `host` and merge what it finds into the current
/// user's lists. Gives the exit value of the walk, 0 for a complete one; nothing when there was no walk.
std::optional<int> walkPrinterTable(const std::string& host);

/// "file://" form of an absolute path.
std::string fileUrl(const std::string& path);

/// The longest piece of a list file's text that goes to the helper as one argument, in UTF-16 units.
inline constexpr size_t kLongestPiece = 90000;

/// Cuts UTF-8 `text` into pieces, borrowed from it, of at most kLongestPiece UTF-16 units, each but the last
/// as long as it can be. A character is never cut: a surrogate pair that does not fit goes whole into the
/// next piece. No pieces when `text` is empty or not UTF-8.
std::vector<std::string_view> listFilePieces(std::string_view text);

/// Replaces the current user's list file by `text`, piece by piece, and stops at the first piece that
/// fails. 0, or -1: the file is then unchanged. `stillWanted`, when given, is asked just before the rename;
/// while it is asked and until the file is replaced, no other process replaces it through this function.
int32_t sendListFile(std::string_view text, const std::function<bool()>& stillWanted = nullptr);
