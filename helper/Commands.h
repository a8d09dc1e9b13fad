#pragma once

/// Runs the command that the arguments name, as main's arguments are given (`argc` may be 0), and writes the
/// reply: the command's name and "=TRUE" or "=FALSE" on a line of its own, and for a failure the reason on
/// standard error. Gives the exit status: 0 done, 1 refused or failed, 2 no such command. A walk that starts
/// does not return.
int runHelper(int argc, const char* const* argv);
