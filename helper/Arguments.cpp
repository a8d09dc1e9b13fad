#include "Arguments.h"

#include <charconv>
#include <string>

namespace {

constexpr std::string_view kFileScheme = "file://";
constexpr size_t kLongestHost = 253;

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// The decoded path of a file URL without a host; empty when it is none.
std::string pathOfFileUrl(std::string_view url)
{
    if (!url.starts_with(kFileScheme) || url.size() == kFileScheme.size() || url[kFileScheme.size()] != '/')
        return {};
    std::string path;
    for (size_t i = kFileScheme.size(); i < url.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(url[i]);
        if (c <= 0x20 || c >= 0x7F || c == '?' || c == '#')
            return {};
        if (c != '%') {
            path += url[i];
            continue;
        }
        if (url.size() - i < 3 || hexDigit(url[i + 1]) < 0 || hexDigit(url[i + 2]) < 0)
            return {};
        char decoded = static_cast<char>(hexDigit(url[i + 1]) * 16 + hexDigit(url[i + 2]));
        if (decoded == '/' || decoded == '\0')
            return {};
        path += decoded;
        i += 2;
    }
    return path;
}

bool isAsciiLetterOrDigit(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

} // namespace

const char* const kWalkArguments[kWalkParameters] = {
    "R4270",  nullptr, "snmpwalk", "-Os",   "-c",
    "vislaq", "-v",    "1",        nullptr, "1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1"};

bool isFileUrlOf(std::string_view url, std::string_view path)
{
    return !path.empty() && pathOfFileUrl(url) == path;
}

std::optional<int> decimalNumber(std::string_view text)
{
    int number = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || std::to_string(number) != text)
        return std::nullopt;
    return number;
}

bool isHostAddress(std::string_view text)
{
    if (text.empty() || text.size() > kLongestHost || text.front() == '-')
        return false;
    for (char c : text)
        if (!isAsciiLetterOrDigit(c) && c != '.' && c != '-')
            return false;
    return true;
}

bool areWalkParameters(const char* const* parameters, std::string_view login)
{
    for (int i = 0; i < kWalkParameters; ++i)
        if (kWalkArguments[i] != nullptr && std::string_view(parameters[i]) != kWalkArguments[i])
            return false;
    return parameters[kWalkLogin] == login && isHostAddress(parameters[kWalkHost]);
}
