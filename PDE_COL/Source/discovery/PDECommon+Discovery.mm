#include "discovery/PDECommon+Discovery.h"

#include "profiles/HelperChannel.h"
#include "profiles/ProfileListOperations.h"

/// A printer's address has to be shorter than this.
enum : NSUInteger { kAddressSize = 255 };

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

/// The device URI of the session's printer, or nil.
static NSURL* deviceURI(PMPrintSession session)
{
    PMPrinter printer = nullptr;
    CFURLRef uri = nullptr;
    if (session == nullptr || PMSessionGetCurrentPrinter(session, &printer) != kPMNoError ||
        PMPrinterCopyDeviceURI(printer, &uri) != kPMNoError)
        return nil;
    return [(NSURL*)uri autorelease];
}

/// The host as it stands in the URI, with its escapes, without user and port; nil or "" when there is none.
/// Not the URL's own host, which is unescaped: an escaped full stop in the name of a service must not become
/// one of those between its parts.
static NSString* hostOf(NSURL* uri)
{
    NSString* location = [(NSString*)CFURLCopyNetLocation((CFURLRef)uri) autorelease];
    if ([location length] >= kAddressSize)
        return nil;
    NSString* host = [[location componentsSeparatedByString:@"@"] lastObject];
    return [[host componentsSeparatedByString:@":"] objectAtIndex:0];
}

/// Bytes 4 to 7 of the first address are the IPv4 address; of another family they are taken as they are.
static NSString* firstAddress(NSArray* addresses)
{
    NSData* first = [addresses count] > 0 ? [addresses objectAtIndex:0] : nil;
    if ([first length] < 8)
        return nil;
    const UInt8* bytes = static_cast<const UInt8*>([first bytes]);
    return [NSString stringWithFormat:@"%d.%d.%d.%d", bytes[4], bytes[5], bytes[6], bytes[7]];
}

/// The address of the service "name.type.transport.domain"; nil when it is not found.
static NSString* resolvedAddress(NSString* host)
{
    NSArray* parts = [host componentsSeparatedByString:@"."];
    if ([parts count] < 4)
        return nil;
    NSString* name = [[parts objectAtIndex:0] stringByRemovingPercentEncoding];
    NSString* type = [[parts subarrayWithRange:NSMakeRange(1, 2)] componentsJoinedByString:@"."];
    CFNetServiceRef service =
        name == nil ? nullptr
                    : CFNetServiceCreate(kCFAllocatorDefault, (CFStringRef)[parts objectAtIndex:3],
                                         (CFStringRef)type, (CFStringRef)name, 0);
    if (service == nullptr)
        return nil;
    NSString* address = nil;
    if (CFNetServiceResolveWithTimeout(service, kResolveSeconds, nullptr))
        address = firstAddress((NSArray*)CFNetServiceGetAddressing(service));
    CFRelease(service);
    return address;
}

/// The host name or address of the session's printer as the walk takes it; nil when it is not to be walked.
static NSString* printerAddress(PMPrintSession session)
{
    NSURL* uri = deviceURI(session);
    switch ([PDECommon commoniGetProtocolByUrl:[uri relativeString]]) {
    case kProtocolBonjour:
        return resolvedAddress(hostOf(uri));
    case kProtocolLpd:
        return hostOf(uri);
    default:
        return nil;
    }
}

@implementation PDECommon (Discovery)

+ (SInt16)commoniGetProtocolByUrl:(NSString*)uri
{
    for (const SchemeCode& scheme : kSchemes)
        if ([uri hasPrefix:scheme.prefix])
            return scheme.code;
    return kProtocolUnknown;
}

+ (int)commoniGetProtocol:(PMPrintSession)session
{
    return [self commoniGetProtocolByUrl:[deviceURI(session) relativeString]];
}

+ (int)commonGetProfilesFromMIB:(PMPrintSession)session
{
    // The copy of the lists is made first, also for a printer that turns out to have no address.
    VelPListSwapProfile(2);
    @autoreleasepool {
        NSString* address = printerAddress(session);
        // Whether the walk succeeded shows in the lists alone.
        if ([address length] > 0)
            (void)walkPrinterTable([address UTF8String]);
    }
    return 0;
}

@end
