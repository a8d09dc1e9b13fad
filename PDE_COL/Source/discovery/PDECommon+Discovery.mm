#include "discovery/PDECommon+Discovery.h"

#include "profiles/HelperChannel.h"
#include "profiles/ProfileListOperations.h"

#include <cstdio>

/// Room for a printer's address.
enum : CFIndex { kAddressSize = 255 };

static const CFTimeInterval kResolveSeconds = 1.0;

struct SchemeCode {
    NSString* prefix;
    ProtocolCode code;
};

/// In the order in which they are tried.
static const SchemeCode kSchemes[] = {
    {@"mdns://", kProtocolBonjour},  {@"dnssd://", kProtocolBonjour}, {@"lpd://", kProtocolLpd},
    {@"pap://", kProtocolAppleTalk}, {@"usb://", kProtocolUsb},
};

/// The device URI of the session's printer, the caller's to release, or null.
static CFURLRef copyDeviceURI(PMPrintSession session)
{
    PMPrinter printer = nullptr;
    CFURLRef uri = nullptr;
    if (session == nullptr || PMSessionGetCurrentPrinter(session, &printer) != kPMNoError ||
        PMPrinterCopyDeviceURI(printer, &uri) != kPMNoError)
        return nullptr;
    return uri;
}

/// Bytes 4 to 7 of the first address are the IPv4 address; of another family they are taken as they are.
static BOOL printFirstAddress(CFNetServiceRef service, char* address)
{
    CFArrayRef addresses = CFNetServiceGetAddressing(service);
    if (addresses == nullptr || CFArrayGetCount(addresses) == 0)
        return NO;
    CFDataRef first = (CFDataRef)CFArrayGetValueAtIndex(addresses, 0);
    if (CFDataGetLength(first) < 8)
        return NO;
    const UInt8* bytes = CFDataGetBytePtr(first);
    snprintf(address, kAddressSize, "%d.%d.%d.%d", bytes[4], bytes[5], bytes[6], bytes[7]);
    return YES;
}

/// "name.type.transport.domain", where only the name has percent escapes.
static BOOL resolveServiceHost(CFStringRef host, char* address)
{
    CFArrayRef parts = CFStringCreateArrayBySeparatingStrings(kCFAllocatorDefault, host, CFSTR("."));
    if (CFArrayGetCount(parts) < 4) {
        CFRelease(parts);
        return NO;
    }
    CFStringRef name = CFURLCreateStringByReplacingPercentEscapes(
        kCFAllocatorDefault, (CFStringRef)CFArrayGetValueAtIndex(parts, 0), CFSTR(""));
    CFMutableStringRef type = CFStringCreateMutable(kCFAllocatorDefault, 0);
    CFStringAppend(type, (CFStringRef)CFArrayGetValueAtIndex(parts, 1));
    CFStringAppendCString(type, ".", CFStringGetSystemEncoding());
    CFStringAppend(type, (CFStringRef)CFArrayGetValueAtIndex(parts, 2));
    CFStringRef domain = (CFStringRef)CFArrayGetValueAtIndex(parts, 3);
    CFNetServiceRef service =
        name != nullptr ? CFNetServiceCreate(kCFAllocatorDefault, domain, type, name, 0) : nullptr;
    BOOL found = NO;
    if (service != nullptr) {
        found = CFNetServiceResolveWithTimeout(service, kResolveSeconds, nullptr) &&
                printFirstAddress(service, address);
        CFRelease(service);
    }
    if (name != nullptr)
        CFRelease(name);
    CFRelease(type);
    CFRelease(parts);
    return found;
}

static BOOL resolveBonjour(CFURLRef uri, char* address)
{
    CFStringRef host = CFURLCopyHostName(uri);
    if (host == nullptr)
        return NO;
    BOOL found = resolveServiceHost(host, address);
    CFRelease(host);
    return found;
}

static BOOL copyNetLocation(CFURLRef uri, char* address)
{
    CFStringRef location = CFURLCopyNetLocation(uri);
    if (location == nullptr)
        return NO;
    BOOL fits = CFStringGetCString(location, address, kAddressSize, kCFStringEncodingMacRoman);
    CFRelease(location);
    return fits;
}

/// The address of the session's printer as the walk takes it, without a port; `agent` is zeroed by the
/// caller.
static BOOL printerAddress(PMPrintSession session, char* agent)
{
    CFURLRef uri = copyDeviceURI(session);
    if (uri == nullptr)
        return NO;
    char address[kAddressSize] = {};
    BOOL found = NO;
    switch ([PDECommon commoniGetProtocolByUrl:(NSString*)CFURLGetString(uri)]) {
    case kProtocolBonjour:
        found = resolveBonjour(uri, address);
        break;
    case kProtocolLpd:
        found = copyNetLocation(uri, address);
        break;
    }
    CFRelease(uri);
    for (int i = 0; found && i < kAddressSize && address[i] != '\0' && address[i] != ':'; ++i)
        agent[i] = address[i];
    return found && agent[0] != '\0';
}

@implementation PDECommon (Discovery)

+ (SInt16)commoniGetProtocolByUrl:(NSString*)uri
{
    if (uri == nil)
        return kProtocolUnknown;
    for (const SchemeCode& scheme : kSchemes) {
        CFRange found = CFStringFind((CFStringRef)uri, (CFStringRef)scheme.prefix, 0);
        if (found.length > 0 && found.location == 0)
            return scheme.code;
    }
    return kProtocolUnknown;
}

+ (int)commoniGetProtocol:(PMPrintSession)session
{
    CFURLRef uri = copyDeviceURI(session);
    if (uri == nullptr)
        return kProtocolUnknown;
    SInt16 code = [self commoniGetProtocolByUrl:(NSString*)CFURLGetString(uri)];
    CFRelease(uri);
    return code;
}

+ (int)commonGetProfilesFromMIB:(PMPrintSession)session
{
    // The copy of the lists is made first, also for a printer that turns out to have no address.
    VelPListSwapProfile(2);
    char agent[kAddressSize] = {};
    if (!printerAddress(session, agent))
        return 0;
    // Whether the walk succeeded shows in the lists alone.
    (void)walkPrinterTable(agent);
    return 0;
}

@end
