#include "discovery/TableWalkCommand.h"

#include "profiles/DriverPaths.h"
#include "profiles/HelperChannel.h"

#include <cstdlib>
#include <string_view>

std::optional<int> walkPrinterTable(const char* agent)
{
    constexpr std::string_view kMarker = "mibwalk_XPC=iRet=";
    const std::optional<std::string> reply =
        helperReply({"mibwalk_XPC", "R4270", loginName(), "snmpwalk", "-Os", "-c", "vislaq", "-v", "1", agent,
                     "1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1"});
    const size_t marker = reply ? reply->find(kMarker) : std::string::npos;
    if (marker == std::string::npos)
        return {};
    return static_cast<int>(strtol(reply->c_str() + marker + kMarker.size(), nullptr, 10));
}
