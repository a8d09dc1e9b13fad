#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Which characters a text field lets through. A character code is a Unicode scalar value; true means that
// the character is accepted.

enum InputKey : int32_t {
    kInputAscii = 0,        ///< AsciiKeyFilter
    kInputFileName = 1,     ///< AsciiKeyFilterAppoint
    kInputAlphaNumeric = 2, ///< AlphaNumericKeyFilter
    kInputNumeric = 3,      ///< NumericKeyFilter; any other key stands for WideCharKeyFilter
};

/// Printable ASCII, and -128.
bool AsciiKeyFilter(int32_t code);

/// The characters of a profile's file name, and -128.
bool AsciiKeyFilterAppoint(int32_t code);

bool AlphaNumericKeyFilter(int32_t code);
bool NumericKeyFilter(int32_t code);

/// Everything but the plus sign and the double quote.
bool WideCharKeyFilter(int32_t code);

/// The filter that `inputkey` stands for.
bool FilterEditTextInputKey(int32_t inputkey, int32_t code);

/// The character code at `index` (below `count`). A surrogate of either half gives a code above 0xFFFF, made
/// with the unit that follows it (0 at the end). `next` is where to go on: always `index` + 1.
int32_t UCFindComposedCharAtIndex(const char16_t* units, size_t count, size_t index, size_t* next);

/// Deletes from `text`, which holds the same `count` UTF-16 units, every character that the filter refuses.
void CheckUniCharString(const char16_t* units, size_t count, int32_t inputkey, std::u16string& text);

/// Whether the name of a chosen file may be taken over: at most 31 units, of the file-name characters only,
/// with one full stop at the most. Its parts may be of any length, which typing would not let through.
bool isBrowsedNameAccepted(const std::u16string& name);
