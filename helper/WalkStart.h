#pragma once

#include "Account.h"
#include "Outcome.h"

/// Becomes the walker, the program R4270Walker beside the helper, as the real user, in an environment of its
/// own, with the arguments of a walk of the printer at `host`. It answers in the helper's place. One walk a
/// user at a time: the walker inherits a locked file as its only extra descriptor. Returns only when that
/// failed, with root given up for good unless another walk is at work (kBusy).
Outcome startWalk(const Account& account, const char* host);
