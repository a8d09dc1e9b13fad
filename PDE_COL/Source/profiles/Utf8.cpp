#include "profiles/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utf8.h>

// utf8::is_valid alone takes longer over a list file than parsing it does. Only the bytes outside ASCII go
// there, run by run; the rest is skipped a word at a time.
bool isUtf8(std::string_view text)
{
    constexpr uint64_t kHighBits = 0x8080808080808080;
    auto isAscii = [](unsigned char byte) { return byte < 0x80; };
    for (const char *at = text.data(), *end = at + text.size(); at != end;) {
        uint64_t word;
        if (static_cast<size_t>(end - at) >= sizeof word) {
            memcpy(&word, at, sizeof word);
            if ((word & kHighBits) == 0) {
                at += sizeof word;
                continue;
            }
        }
        const char* run = std::find_if_not(at, end, isAscii);
        at = std::find_if(run, end, isAscii);
        if (!utf8::is_valid(run, at))
            return false;
    }
    return true;
}
