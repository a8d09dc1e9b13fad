#pragma once

#include <optional>
#include <string_view>

/// True when `url` is the file URL of exactly `path`: "file:///..." without a host, a query or a fragment,
/// each character written as itself or percent-encoded once. An encoded "/" or NUL is refused.
bool isFileUrlOf(std::string_view url, std::string_view path);

/// A decimal number as "%d" prints it; empty for anything else.
std::optional<int> decimalNumber(std::string_view text);

/// A dotted address or a host name: 1 to 253 letters, digits, "." and "-", the first one not "-".
bool isHostAddress(std::string_view text);

/// The parameters of a walk: the model, the login name, then the walk's own eight strings.
inline constexpr int kWalkParameters = 10;
inline constexpr int kWalkLogin = 1;
inline constexpr int kWalkHost = 8;

/// What each parameter of a walk must be, byte for byte; null for the login name and the host address.
extern const char* const kWalkArguments[kWalkParameters];

/// True when `parameters` (kWalkParameters of them) ask for the walk of the calling user `login`.
bool areWalkParameters(const char* const* parameters, std::string_view login);
