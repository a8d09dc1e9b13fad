#pragma once

#include "profiles/ProfileRecord.h"

#include <optional>
#include <string>
#include <string_view>

// What a name may be, which depends on where it comes from:
//   in a list file          text of at most kLongestName bytes
//   from a printer          may fill its field, as the merge compares all 32 bytes with those stored
//   kept by the merge       the file-name rule (bJudgement8point3Format)
//   typed in the window     kLongestTypedName UTF-16 units, so that it fits; the parts of a chosen file's
//                           name may be longer than the rule allows, as the next walk judges them anyway
//   given to profilectl     the file-name rule and kLongestName, refused instead of cut

/// Bytes of a name in a list file.
inline constexpr int kLongestName = kProfileNameSize - 1;

/// What can be typed in the profile window: units of a file name, of its extension and of a profile's name.
inline constexpr int kLongestTypedName = 31, kLongestTypedExtension = 3, kLongestTypedProfileName = 30;

/// The file-name rule: bytes before the first full stop (or of a name without one), and after it.
inline constexpr int kMaxBaseLength = 27, kMaxExtensionLength = 3;

/// True when a profile with this file name may be kept. `name` is NUL-terminated and stays the caller's;
/// null and "" are refused. Only the first full stop parts base from extension: "a.b.c" has the extension
/// "b.c". A name that ends in a full stop has an empty extension, which is allowed; an empty base is not.
bool bJudgement8point3Format(const char* name);

/// True when `character` may stand in the file name. It is a byte of the name as a signed value, so that
/// bytes of 0x80 and more are negative and refused; a wide character above 127 may be a letter or digit of
/// the current locale.
bool FileNameFilter(int character);

/// The same for typed characters, of which only ASCII ones are: `code` is a Unicode scalar value. The
/// commercial at is left out on purpose.
constexpr bool isFileNameCharacter(int32_t code)
{
    constexpr std::string_view kMarks = "!#$%&'()-.^_`{}~";
    return (code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z') ||
           (code > 0 && code < 0x80 && kMarks.find(static_cast<char>(code)) != std::string_view::npos);
}

/// The text in a name field: up to its terminator, or all 32 bytes when it has none. Borrowed from `field`.
std::string_view nameText(const char (&field)[kProfileNameSize]);

/// Puts `text` (UTF-8) into a name field: its first `longest` bytes, also when that is inside a character,
/// and zeros after it. `text` counts up to its first NUL. With kProfileNameSize the field may be filled.
void setNameText(char (&field)[kProfileNameSize], std::string_view text, size_t longest = kLongestName);

/// The text of a name field as a list file can hold it: kLongestName bytes at most. The bytes that a cut left
/// of its last character are left out. Nothing when the rest is no UTF-8 or holds a control character.
std::optional<std::string> storableName(const char (&field)[kProfileNameSize]);
