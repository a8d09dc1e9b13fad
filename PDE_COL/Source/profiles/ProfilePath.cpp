#include "profiles/ProfilePath.h"

#include "profiles/ProfileName.h"
#include "profiles/Utf8.h"

#include <algorithm>

namespace {

constexpr size_t kLongestCoded = 1023;
constexpr unsigned char kZero = 48;

} // namespace

std::string_view printerFolder(int32_t location)
{
    switch (location) {
    case kOnDisk:
        return "/ata1a/data/USfiles/Profiles/";
    case kOnCard:
        return "/ataCf1a/data/USfiles/Profiles/";
    default:
        return "";
    }
}

std::string printerPath(const ProfileRecord& record)
{
    return std::string(printerFolder(record.Location)).append(nameText(record.FileName));
}

std::string encodePrinterPath(std::string_view path)
{
    std::string coded;
    coded.reserve(path.size() * 2);
    for (unsigned char byte : path) {
        coded += static_cast<char>((byte >> 4) + kZero);
        coded += static_cast<char>((byte & 15) + kZero);
    }
    return coded;
}

std::optional<std::string> decodePrinterPath(std::string_view coded)
{
    if (coded.size() > kLongestCoded ||
        std::any_of(coded.begin(), coded.end(), [](unsigned char c) { return c > 0x7F; }))
        return std::nullopt;
    std::string path;
    for (size_t i = 0; i + 1 < coded.size(); i += 2) {
        // The "0" of the first character drops out of the product: 48 times 16 is 0 modulo 256.
        path += static_cast<char>(static_cast<unsigned char>(coded[i] * 16 + coded[i + 1] - kZero));
    }
    if (!isUtf8(path))
        return std::nullopt;
    return path;
}
