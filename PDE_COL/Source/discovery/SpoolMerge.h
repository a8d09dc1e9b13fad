#pragma once

#include "profiles/ProfileRecord.h"

#include <cstdint>

// The merge of what a walk has spooled into the stored lists. It runs at the end of every walk, successful
// or not, in the process that walked.

/// Reads the three stored lists, marks the entries that came from the printer as not found, merges the
/// spool, and writes the lists back. `exitValue` is the walk's: 0 for success. A failed walk frees the
/// unlisted printer entries first, then merges the rows that were read before it failed. Gives the result of
/// the write, 0 or -1.
int32_t vRestructPlistSpool2Current(int exitValue);

/// Marks every entry of `list` that came from the printer as not found; after a failed walk (`failed`
/// non-zero) frees the unlisted ones and keeps the listed ones as if registered by hand.
void vDeleteMIBprofilesTemporary(int failed, ProfileList* list);

/// Merges record `row` (0 to 499) of the spool into `list`: an entry of the same file name and location is
/// marked as found and otherwise left as it is; without one the row takes the first free slot. A full list
/// drops the row.
void vRestructDetail(int row, ProfileList* list);
