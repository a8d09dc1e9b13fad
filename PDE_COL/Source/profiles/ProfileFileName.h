#pragma once

/// Longest part before the first full stop (or of a name without one), and longest part after it, in bytes.
inline constexpr int kMaxBaseLength = 27;
inline constexpr int kMaxExtensionLength = 3;

/// True when a profile with this file name may be kept. `name` is NUL-terminated and stays the caller's;
/// null and "" are refused. Only the first full stop parts base from extension: "a.b.c" has the extension
/// "b.c". A name that ends in a full stop has an empty extension, which is allowed; an empty base is not.
bool bJudgement8point3Format(const char* name);

/// True when `character` may stand in the file name. It is a byte of the name as a signed value, so that
/// bytes of 0x80 and more are negative and refused; a wide character above 127 may be a letter or digit of
/// the current locale.
bool FileNameFilter(int character);
