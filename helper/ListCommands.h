#pragma once

#include "Account.h"
#include "Outcome.h"

// What the helper does with a user's list files. Whether he may is the caller's question, asked before.

/// Puts the staged list in the place of the current one, if it is a profile list, and ends the write. What
/// is not one is thrown away.
Outcome publishStagedList(const Account& account);

/// The modes of a swap, which are kNoList and kNoPreviousCopy when there is nothing to copy. Any other mode
/// does nothing and is kNoSuchMode.
inline constexpr int kKeepPreviousCopy = 2; ///< copies the current list to the previous copy
inline constexpr int kPutBackPreviousCopy = 3;
Outcome swapLists(const Account& account, int mode);

/// kNoList unless the current list stands there.
Outcome currentListExists(const Account& account);

/// Removes the current list or its previous copy, by its name in the folder; kNoList or
/// kNoPreviousCopy when it is not there.
Outcome removeList(const Account& account, const std::string& name);
