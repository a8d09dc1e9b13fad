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
        NSArray* addresses = (NSArray*)CFNetServiceGetAddressing(service);
        if (found != (addresses != nil))
            return 1;
        char text[INET_ADDRSTRLEN];
        for (NSData* address in addresses)
            if ([address length] == sizeof(sockaddr_in))
                puts(inet_ntop(AF_INET, (const UInt8*)[address bytes] + 4, text, sizeof text));
        CFRelease(service);
    }
    return 0;
}
