#pragma once

#include "Account.h"
#include "Outcome.h"

#include <vector>

/// A dotted address or a host name: 1 to 253 letters, digits, ".", "-" and "_", the first one not "-". What
/// ends in a number is an address with its four numbers or nothing.
bool isHostAddress(std::string_view text);

/// Becomes the walker, the program R4270Walker beside the helper, as the real user, in an environment of its
/// own, with `command` as its arguments: a checked walk command. It answers in the helper's place. One walk a
/// user at a time: the walker inherits a locked file as its only extra descriptor. Returns only when that
/// failed, with root given up for good unless another walk is at work (kBusy).
Outcome startWalk(const Account& account, std::vector<std::string> command);
