#pragma once

/// How a command ended: kDone, or the one reason why it was refused or failed.
enum class Outcome {
    kDone,
    kWrongParameters,
    kForeignPath,
    kNoAccount,
    kNotPermitted,
    kUnsafeFolder,
    kUnsafeFile,
    kBusy,
    kNoCaller,
    kNoWriteBegun,
    kTooManyWrites,
    kTooLarge,
    kNotAProfileList,
    kNoList,
    kNoPreviousCopy,
    kNoSuchMode,
    kFileError,
    kNoWalker,
};

/// One sentence for standard error. It never holds anything that the caller or the disk said, so that a
/// refusal tells nobody what exists.
const char* reasonFor(Outcome outcome);
