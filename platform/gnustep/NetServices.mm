#include <CFNetwork/CFNetwork.h>

#include "ServiceResolver.h"

#import <Foundation/Foundation.h>

@interface CFNetServiceObject : NSObject
{
    NSString* name_;
    NSString* type_;
    NSString* domain_;
    NSArray* addressing_;
}
- (instancetype)initWithDomain:(NSString*)domain type:(NSString*)type name:(NSString*)name;
- (BOOL)resolveWithTimeout:(NSTimeInterval)timeout;
- (NSArray*)addressing;
@end

@implementation CFNetServiceObject

- (instancetype)initWithDomain:(NSString*)domain type:(NSString*)type name:(NSString*)name
{
    self = [super init];
    name_ = [name copy];
    type_ = [type copy];
    domain_ = [domain copy];
    return self;
}

- (void)dealloc
{
    [name_ release];
    [type_ release];
    [domain_ release];
    [addressing_ release];
    [super dealloc];
}

- (BOOL)resolveWithTimeout:(NSTimeInterval)timeout
{
    std::optional<sockaddr_in> address =
        resolveService({[name_ UTF8String], [type_ UTF8String], [domain_ UTF8String]},
                       std::chrono::milliseconds(static_cast<int>(timeout * 1000)));
    [addressing_ release];
    addressing_ = nil;
    if (!address)
        return NO;
    NSData* data = [NSData dataWithBytes:&*address length:sizeof *address];
    addressing_ = [[NSArray alloc] initWithObjects:data, nil];
    return YES;
}

- (NSArray*)addressing
{
    return addressing_;
}

@end

CFNetServiceRef CFNetServiceCreate(CFAllocatorRef, CFStringRef domain, CFStringRef serviceType,
                                   CFStringRef name, SInt32)
{
    if (domain == nullptr || serviceType == nullptr || name == nullptr)
        return nullptr;
    return (CFNetServiceRef)[[CFNetServiceObject alloc] initWithDomain:(NSString*)domain
                                                                  type:(NSString*)serviceType
                                                                  name:(NSString*)name];
}

Boolean CFNetServiceResolveWithTimeout(CFNetServiceRef service, CFTimeInterval timeout, CFStreamError*)
{
    return [(CFNetServiceObject*)service resolveWithTimeout:timeout];
}

CFArrayRef CFNetServiceGetAddressing(CFNetServiceRef service)
{
    return (CFArrayRef)[(CFNetServiceObject*)service addressing];
}
