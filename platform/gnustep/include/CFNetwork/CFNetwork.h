#pragma once

// Bonjour: finding the address of a service that is known by name. Here the Avahi daemon is asked.

#include <CoreFoundation/CoreFoundation.h>

typedef struct __CFNetService* CFNetServiceRef;

extern "C" {

/// A service by its name, with nothing looked up yet. `port` is only for registering services: 0. Null when a
/// string is null.
CFNetServiceRef CFNetServiceCreate(CFAllocatorRef allocator, CFStringRef domain, CFStringRef serviceType,
                                   CFStringRef name, SInt32 port);

/// Blocks until an address is known, at most `timeout` seconds, whatever state the daemon or the message bus
/// is in. False, and no message, when none was found. `error` must be null.
Boolean CFNetServiceResolveWithTimeout(CFNetServiceRef service, CFTimeInterval timeout, CFStreamError* error);

/// The service's socket addresses (struct sockaddr in a CFData each), borrowed; null before it is resolved.
/// Only IPv4 addresses are looked for.
CFArrayRef CFNetServiceGetAddressing(CFNetServiceRef service);

} // extern "C"
