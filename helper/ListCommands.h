#pragma once

#include "Account.h"
#include "Outcome.h"

// What the helper does with a user's list files, each known by its name in the folder. Whether he may is the
// caller's question, asked before. kNoList or kNoPreviousCopy is said of a file that is not there.

/// Puts the staged list in the place of the current one, if it is a profile list, and ends the write. What
/// is not one is thrown away.
Outcome publishStagedList(const Account& account);

/// Puts a copy of the list `from`, which has to be a profile list, in the place of `to` in one step.
Outcome copyList(const Account& account, const std::string& from, const std::string& to);

/// kNoList unless the current list stands there.
Outcome currentListExists(const Account& account);

/// Removes the current list or its previous copy.
Outcome removeList(const Account& account, const std::string& name);
