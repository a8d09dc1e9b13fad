#pragma once

/// How a command ended: done, or one sentence for standard error why it was refused or failed. The sentence
/// never holds anything that the caller or the disk said, so that a refusal tells nobody what exists.
struct Outcome {
    const char* reason = nullptr; ///< null when done
    explicit operator bool() const { return reason == nullptr; }
};

inline constexpr Outcome kDone;
inline constexpr Outcome kWrongParameters{"wrong parameters"};
inline constexpr Outcome kForeignPath{"not a file of this user's profile lists"};
inline constexpr Outcome kNoAccount{"no usable account for the calling user"};
inline constexpr Outcome kNotRoot{
    "the helper has no root rights: its set-id bit is missing or its file system is mounted nosuid"};
inline constexpr Outcome kNotPermitted{"this user may not manage profile lists"};
inline constexpr Outcome kUnsafeFolder{
    "the preferences folder, or one above it, is missing, a link, or can be changed by others"};
inline constexpr Outcome kUnsafeFile{
    "what stands in the list's place is a link or no file, or belongs to others or can be written by them"};
inline constexpr Outcome kBusy{"another command of this user is still at work"};
inline constexpr Outcome kNoCaller{"the calling process cannot be identified"};
inline constexpr Outcome kNoWriteBegun{"no write has been begun"};
inline constexpr Outcome kTooManyWrites{"too many writes are under way"};
inline constexpr Outcome kTooLarge{"too large for a profile list"};
inline constexpr Outcome kNotAProfileList{"not a profile list, or a damaged one"};
inline constexpr Outcome kNoList{"there is no profile list yet"};
inline constexpr Outcome kNoPreviousCopy{"there is no previous copy of a profile list"};
inline constexpr Outcome kNoSuchMode{"this mode does nothing"};
inline constexpr Outcome kFileError{"a file operation failed"};
inline constexpr Outcome kNoWalker{"R4270Walker beside the helper is missing or cannot be run"};
inline constexpr Outcome kNoMemory{"out of memory"};
