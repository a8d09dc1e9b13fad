#include <CoreFoundation/CoreFoundation.h>

#import <Foundation/Foundation.h>

// Type identifiers only need to differ from each other and from 0, the one of any other object.
enum : CFTypeID { kOtherType = 0, kStringType = 7, kDictionaryType = 18, kArrayType = 19, kNumberType = 22 };

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFArrayCallBacks kCFTypeArrayCallBacks = {0};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {0};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {0};

static id object(CFTypeRef reference)
{
    return (id)reference;
}

static NSStringEncoding foundationEncoding(CFStringEncoding encoding)
{
    switch (encoding) {
    case kCFStringEncodingMacRoman:
        return (NSStringEncoding)30;
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

CFTypeRef CFRetain(CFTypeRef reference)
{
    return [object(reference) retain];
}

void CFRelease(CFTypeRef reference)
{
    [object(reference) release];
}

CFTypeID CFGetTypeID(CFTypeRef reference)
{
    if ([object(reference) isKindOfClass:[NSString class]])
        return kStringType;
    if ([object(reference) isKindOfClass:[NSDictionary class]])
        return kDictionaryType;
    if ([object(reference) isKindOfClass:[NSArray class]])
        return kArrayType;
    return [object(reference) isKindOfClass:[NSNumber class]] ? kNumberType : kOtherType;
}

CFTypeID CFStringGetTypeID(void)
{
    return kStringType;
}

CFTypeID CFDictionaryGetTypeID(void)
{
    return kDictionaryType;
}

CFTypeID CFArrayGetTypeID(void)
{
    return kArrayType;
}

CFTypeID CFNumberGetTypeID(void)
{
    return kNumberType;
}

CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef, CFIndex, const CFArrayCallBacks*)
{
    return (CFMutableArrayRef)[[NSMutableArray alloc] init];
}

void CFArrayAppendValue(CFMutableArrayRef array, const void* value)
{
    [object(array) addObject:object(value)];
}

CFIndex CFArrayGetCount(CFArrayRef array)
{
    return (CFIndex)[(NSArray*)array count];
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index)
{
    return [object(array) objectAtIndex:(NSUInteger)index];
}

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef, CFIndex, const CFDictionaryKeyCallBacks*,
                                                 const CFDictionaryValueCallBacks*)
{
    return (CFMutableDictionaryRef)[[NSMutableDictionary alloc] init];
}

CFMutableDictionaryRef CFDictionaryCreateMutableCopy(CFAllocatorRef, CFIndex, CFDictionaryRef dictionary)
{
    return (CFMutableDictionaryRef)[object(dictionary) mutableCopy];
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary)
{
    return (CFIndex)[(NSDictionary*)dictionary count];
}

Boolean CFDictionaryContainsKey(CFDictionaryRef dictionary, const void* key)
{
    return [(NSDictionary*)dictionary objectForKey:object(key)] != nil;
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key)
{
    return [(NSDictionary*)dictionary objectForKey:object(key)];
}

void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value)
{
    [(NSMutableDictionary*)dictionary setObject:object(value) forKey:object(key)];
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values)
{
    CFIndex i = 0;
    for (id key in (NSDictionary*)dictionary) {
        if (keys != nullptr)
            keys[i] = key;
        if (values != nullptr)
            values[i] = [(NSDictionary*)dictionary objectForKey:key];
        ++i;
    }
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* text, CFStringEncoding encoding)
{
    return (CFStringRef)[[NSString alloc] initWithBytes:text
                                                 length:strlen(text)
                                               encoding:foundationEncoding(encoding)];
}

CFStringRef CFStringCreateCopy(CFAllocatorRef, CFStringRef string)
{
    return (CFStringRef)[(NSString*)string copy];
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

CFIndex CFStringCompare(CFStringRef a, CFStringRef b, CFOptionFlags)
{
    return [(NSString*)a compare:(NSString*)b options:NSLiteralSearch];
}

const UInt8* CFDataGetBytePtr(CFDataRef data)
{
    return static_cast<const UInt8*>([(NSData*)data bytes]);
}

CFIndex CFDataGetLength(CFDataRef data)
{
    return (CFIndex)[(NSData*)data length];
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value)
{
    if (type != kCFNumberSInt32Type)
        return false;
    SInt32 converted = [(NSNumber*)number intValue];
    *static_cast<SInt32*>(value) = converted;
    // As on macOS: no, when something of the number is lost.
    return [(NSNumber*)number doubleValue] == converted;
}
