#pragma once

#include <array>
#include <cstdint>

/// Slots of a profile list, used or free.
inline constexpr int kProfileSlots = 500;

/// Bytes of a name field. Names are UTF-8, cut at 31 bytes without regard to character boundaries. A field
/// that came from a printer can be full and without a terminator: never read one as a C string.
inline constexpr int kProfileNameSize = 32;

/// One colour profile. The field names are also the keys of the list file.
struct ProfileRecord {
    int32_t IndexOnDevice; ///< row in the printer's table; 500 + slot when registered by hand; 0 unknown
    int32_t InMenu;        ///< state, see InMenuCode
    int32_t ProfileClass;  ///< as the printer reports it; 2 when registered by hand
    char FileName[kProfileNameSize];
    char ProfileName[kProfileNameSize];
    int32_t Location;     ///< see ProfileLocation
    int32_t TableColumn7; ///< column 7 of the printer's table; neither read from the file nor written to it
};
static_assert(sizeof(ProfileRecord) == 84);

/// The profiles of one class. Plain data: the caller owns it and zeroes it before a read.
struct ProfileList {
    ProfileRecord records[kProfileSlots];
    int32_t iNum; ///< used slots
};
static_assert(sizeof(ProfileList) == 42004);

/// The three lists, which are always handled in this order.
enum ProfileListIndex : int32_t { kRgbList = 0, kSimList = 1, kDstList = 2, kProfileListCount = 3 };
using ProfileLists = std::array<ProfileList, kProfileListCount>;

/// ProfileRecord::InMenu. "Listed" profiles appear in the panel's menus.
enum InMenuCode : int32_t {
    kFreeSlot = 0,
    kGoneHidden = 1,  ///< known from the printer, not found by the last walk
    kFoundHidden = 2, ///< found on the printer by the last walk
    kGoneListed = 3,
    kFoundListed = 4,
    kByHandHidden = 5, ///< not confirmed on the printer: registered by hand, or kept after a failed walk
    kByHandListed = 6,
};

/// ProfileRecord::Location. Any other value means no known folder.
enum ProfileLocation : int32_t { kOnDisk = 4, kOnCard = 5 };
