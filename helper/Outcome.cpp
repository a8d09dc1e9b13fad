#include "Outcome.h"

const char* reasonFor(Outcome outcome)
{
    switch (outcome) {
    case Outcome::kDone:
        return "done";
    case Outcome::kWrongParameters:
        return "wrong parameters";
    case Outcome::kForeignPath:
        return "not a file of this user's profile lists";
    case Outcome::kNoAccount:
        return "no usable account for the calling user";
    case Outcome::kNotPermitted:
        return "this user may not manage profile lists";
    case Outcome::kUnsafeFolder:
        return "the preferences folder is missing or can be changed by others";
    case Outcome::kUnsafeFile:
        return "something that is not a profile list stands in its place";
    case Outcome::kBusy:
        return "another command of this user is still at work";
    case Outcome::kNoCaller:
        return "the calling process cannot be identified";
    case Outcome::kNoWriteBegun:
        return "no write has been begun";
    case Outcome::kTooManyWrites:
        return "too many writes are under way";
    case Outcome::kTooLarge:
        return "too large for a profile list";
    case Outcome::kNotAProfileList:
        return "what was written is not a profile list";
    case Outcome::kNoList:
        return "there is no profile list yet";
    case Outcome::kNoPreviousCopy:
        return "there is no previous copy of a profile list";
    case Outcome::kNoSuchMode:
        return "this mode does nothing";
    case Outcome::kFileError:
        return "a file operation failed";
    case Outcome::kNoWalker:
        return "the walk is not available";
    }
    return "failed";
}
