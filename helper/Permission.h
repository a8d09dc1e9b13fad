#pragma once

#include "Account.h"

/// True when the calling user may manage profile lists: he is root or a member of the administrators' group
/// (PDE_ADMIN_GROUP, by its exact name); or counts as one by isAdministratorByFolder.
/// The group database is asked, not the process, whose groups its caller may have chosen. When a question
/// cannot be answered the answer is no.
bool mayManageLists(const Account& account);
