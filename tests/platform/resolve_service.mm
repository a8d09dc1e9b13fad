#include <CFNetwork/CFNetwork.h>

#import <Foundation/Foundation.h>
#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>

// resolve_service NAME SECONDS: prints the IPv4 address of a printer by its service name, or nothing. A
// program of its own because a process keeps to the message bus that it met first.
int main(int, char** argv)
{
    @autoreleasepool {
        CFNetServiceRef service =
            CFNetServiceCreate(kCFAllocatorDefault, CFSTR("local"), CFSTR("_pdl-datastream._tcp"),
                               (CFStringRef)[NSString stringWithUTF8String:argv[1]], 0);
        const bool found = CFNetServiceResolveWithTimeout(service, atof(argv[2]), nullptr);
        CFArrayRef addresses = CFNetServiceGetAddressing(service);
        if (found != (addresses != nullptr))
            return 1;
        if (found) {
            CFDataRef first = (CFDataRef)CFArrayGetValueAtIndex(addresses, 0);
            char text[INET_ADDRSTRLEN];
            if (CFDataGetLength(first) != sizeof(sockaddr_in))
                return 1;
            puts(inet_ntop(AF_INET, CFDataGetBytePtr(first) + 4, text, sizeof text));
        }
        CFRelease(service);
    }
    return 0;
}
