#include <CoreFoundation/CoreFoundation.h>

#import <Foundation/Foundation.h>

// Type identifiers only need to differ from each other and from 0, the one of any other object.
enum : CFTypeID { kOtherType = 0, kStringType = 7, kDictionaryType = 18 };

const CFAllocatorRef kCFAllocatorDefault = nullptr;

static id object(CFTypeRef reference)
{
    return (id)reference;
}

unsigned long CFStringConvertEncodingToNSStringEncoding(CFStringEncoding encoding)
{
    switch (encoding) {
    case kCFStringEncodingMacRoman:
        return 30;
    case kCFStringEncodingWindowsLatin1:
        return NSWindowsCP1252StringEncoding;
    case kCFStringEncodingISOLatin1:
        return NSISOLatin1StringEncoding;
    case kCFStringEncodingShiftJIS:
        return NSShiftJISStringEncoding;
    default:
        return NSUTF8StringEncoding;
    }
}

void CFRelease(CFTypeRef reference)
{
    [object(reference) release];
}

CFTypeID CFGetTypeID(CFTypeRef reference)
{
    if ([object(reference) isKindOfClass:[NSString class]])
        return kStringType;
    return [object(reference) isKindOfClass:[NSDictionary class]] ? kDictionaryType : kOtherType;
}

CFTypeID CFStringGetTypeID(void)
{
    return kStringType;
}

CFTypeID CFDictionaryGetTypeID(void)
{
    return kDictionaryType;
}

CFStringEncoding CFStringGetSystemEncoding(void)
{
    return kCFStringEncodingUTF8;
}

CFDataRef CFStringCreateExternalRepresentation(CFAllocatorRef, CFStringRef string, CFStringEncoding encoding,
                                               UInt8)
{
    auto foundationEncoding = (NSStringEncoding)CFStringConvertEncodingToNSStringEncoding(encoding);
    return (
        CFDataRef)[[(NSString*)string dataUsingEncoding:foundationEncoding allowLossyConversion:YES] retain];
}

const UInt8* CFDataGetBytePtr(CFDataRef data)
{
    return static_cast<const UInt8*>([(NSData*)data bytes]);
}

CFIndex CFDataGetLength(CFDataRef data)
{
    return (CFIndex)[(NSData*)data length];
}

CFStringRef CFURLCopyNetLocation(CFURLRef url)
{
    NSString* text = [(NSURL*)url relativeString];
    NSRange slashes = [text rangeOfString:@"://"];
    if (slashes.location == NSNotFound)
        return nullptr;
    NSString* rest = [text substringFromIndex:NSMaxRange(slashes)];
    NSRange end = [rest rangeOfCharacterFromSet:[NSCharacterSet characterSetWithCharactersInString:@"/?#"]];
    NSString* location = end.location == NSNotFound ? rest : [rest substringToIndex:end.location];
    return [location length] == 0 ? nullptr : (CFStringRef)[location copy];
}
