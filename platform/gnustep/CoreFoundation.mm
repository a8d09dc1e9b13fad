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
    case kCFStringEncodingASCII:
        return NSASCIIStringEncoding;
    default:
        return NSUTF8StringEncoding;
    }
}

static NSStringEncoding foundationEncoding(CFStringEncoding encoding)
{
    return (NSStringEncoding)CFStringConvertEncodingToNSStringEncoding(encoding);
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

CFIndex CFArrayGetCount(CFArrayRef array)
{
    return (CFIndex)[(NSArray*)array count];
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index)
{
    return [object(array) objectAtIndex:(NSUInteger)index];
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* text, CFStringEncoding encoding)
{
    return (CFStringRef)[[NSString alloc] initWithBytes:text
                                                 length:strlen(text)
                                               encoding:foundationEncoding(encoding)];
}

CFMutableStringRef CFStringCreateMutable(CFAllocatorRef, CFIndex)
{
    return (CFMutableStringRef)[[NSMutableString alloc] init];
}

void CFStringAppend(CFMutableStringRef string, CFStringRef appended)
{
    [(NSMutableString*)string appendString:(NSString*)appended];
}

void CFStringAppendCString(CFMutableStringRef string, const char* text, CFStringEncoding encoding)
{
    CFStringRef appended = CFStringCreateWithCString(kCFAllocatorDefault, text, encoding);
    if (appended == nullptr)
        return;
    CFStringAppend(string, appended);
    CFRelease(appended);
}

CFArrayRef CFStringCreateArrayBySeparatingStrings(CFAllocatorRef, CFStringRef string, CFStringRef separator)
{
    return (CFArrayRef)[[(NSString*)string componentsSeparatedByString:(NSString*)separator] retain];
}

CFRange CFStringFind(CFStringRef string, CFStringRef wanted, CFOptionFlags)
{
    NSRange found = [(NSString*)string rangeOfString:(NSString*)wanted options:NSLiteralSearch];
    if (found.location == NSNotFound)
        return {kCFNotFound, 0};
    return {(CFIndex)found.location, (CFIndex)found.length};
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size, CFStringEncoding encoding)
{
    // Foundation's own method raises for a character that the encoding lacks.
    NSData* bytes = [(NSString*)string dataUsingEncoding:foundationEncoding(encoding)];
    if (bytes == nil || (CFIndex)[bytes length] >= size)
        return false;
    [bytes getBytes:buffer length:[bytes length]];
    buffer[[bytes length]] = '\0';
    return true;
}

CFStringEncoding CFStringGetSystemEncoding(void)
{
    return kCFStringEncodingUTF8;
}

CFDataRef CFStringCreateExternalRepresentation(CFAllocatorRef, CFStringRef string, CFStringEncoding encoding,
                                               UInt8)
{
    return (CFDataRef)[[(NSString*)string dataUsingEncoding:foundationEncoding(encoding)
                                       allowLossyConversion:YES] retain];
}

const UInt8* CFDataGetBytePtr(CFDataRef data)
{
    return static_cast<const UInt8*>([(NSData*)data bytes]);
}

CFIndex CFDataGetLength(CFDataRef data)
{
    return (CFIndex)[(NSData*)data length];
}
