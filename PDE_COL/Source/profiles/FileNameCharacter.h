#pragma once

#include <cstdint>

/// True when the character may stand in the name of a profile's file, whether typed or found on a printer:
/// an ASCII letter or digit or one of sixteen punctuation marks. `code` is a Unicode scalar value; a byte of
/// 0x80 or more, which may arrive as a negative value, is none of them. The commercial at is left out on
/// purpose.
constexpr bool isFileNameCharacter(int32_t code)
{
    switch (code) {
    case '!':
    case '#':
    case '$':
    case '%':
    case '&':
    case '\'':
    case '(':
    case ')':
    case '-':
    case '.':
    case '^':
    case '_':
    case '`':
    case '{':
    case '}':
    case '~':
        return true;
    default:
        return (code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z');
    }
}
