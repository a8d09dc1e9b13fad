#pragma once

#include <cstdint>

/// How a queue reaches its printer, from the scheme of its device URI.
enum ProtocolCode : int16_t {
    kProtocolUnknown = -1,  ///< any other scheme, or no URI
    kProtocolLpd = 0,       ///< "lpd://"
    kProtocolBonjour = 1,   ///< "mdns://", "dnssd://"
    kProtocolAppleTalk = 2, ///< "pap://"
    kProtocolUsb = 3,       ///< "usb://"
};
