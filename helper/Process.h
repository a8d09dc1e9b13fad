#pragma once

/// Frees the process from everything that its caller chose: environment, limits, open files, signals and
/// timers, file mode mask, working directory. From then on it is not dumpable, ends after kDeadlineSeconds
/// at the latest, and works as the real user; see RootScope. False when it cannot, or has the rights of
/// another than the owner of the lists: then it must end at once.
///
/// The real user id stays the caller's, so he can stop or kill his own helper. That harms nobody but him:
/// locks are a user's own and end with the process, and every file is replaced in one step.
bool settleProcess();

inline constexpr unsigned kDeadlineSeconds = 10;

/// Whether it may do what the owner of the lists may: not when an installed helper is not, or cannot be,
/// set-id.
bool hasOwnersRights();

/// While one lives, the process has the rights of its executable's owner (root, where it is installed).
class RootScope {
public:
    RootScope();
    ~RootScope();
    RootScope(const RootScope&) = delete;
    RootScope& operator=(const RootScope&) = delete;
};

/// Gives the caller back his limits, ends the deadline, and gives root up for good: the process is the real
/// user's from then on and cannot go back. False when that failed; then it must end at once.
bool becomeRealUser();
