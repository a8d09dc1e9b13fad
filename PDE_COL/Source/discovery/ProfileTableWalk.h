#pragma once

#include <chrono>

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

// The walk of the printer's profile table over SNMP version 1. Its state is process-wide: one walk at a
// time. Each walk starts clean.

/// The most variables that one walk accepts, seven times the rows of a full table and some.
inline constexpr int kMaxWalkVariables = 10000;

/// What all exchanges of a walk may take together.
inline std::chrono::milliseconds walkTimeLimit = std::chrono::minutes(2);

/// The most questions that a walk has under way at a time; 1 is a walk that waits for each answer.
inline int walkWindow = 8;

/// Variables that the current walk, or the last one, has accepted.
extern int numprinted;

/// Walks a subtree with net-snmp's command line ("snmpwalk", options, agent, root), column by column into the
/// spool, then merges the spool into the stored lists. Without a root it walks MIB-2. `argv` is left as it
/// is; the option -C takes "c" (do not check the order), "i" (get the root first), "p" (count for the debug
/// hook). Gives 0 for a complete walk; 1 for a bad root, no session, a time-out, a transport error, names
/// that do not increase, or a walk beyond its limits; 2 when the agent answered with an error other than
/// noSuchName; -1 or -2 from the argument parser. The lists are merged in every case.
int mib_walk(int argc, char* argv[]);

/// Gets one object and prints each variable of the answer to standard output, counting it in `numprinted`.
/// Failures are dropped without a word. `session` is that of the walk.
void snmp_get_and_print(netsnmp_session* session, const oid* name, size_t length);

/// Option handler for snmp_parse_args: toggles what the letters of -C name. An unknown letter is noted in
/// the walk's message and skipped.
void optProc(int argc, char* const* argv, int option);

/// What the walk or its option handler last complained about, "" for nothing. Nothing displays it.
const char* walkMessage();
