#pragma once

// Core Foundation on top of GNUstep Foundation: every object is the Foundation object of the same kind, so
// that the two are interchangeable, as on macOS. Only what the plug-in calls is here. The functions take and
// give what Apple documents; like there, a null argument is the caller's fault unless said otherwise.

#include <cstdint>

typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef int16_t SInt16;
typedef uint16_t UInt16;
typedef int32_t SInt32;
typedef uint32_t UInt32;
typedef int32_t OSStatus;
typedef uint16_t UniChar;
typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef UInt32 CFStringEncoding;
typedef double CFTimeInterval;

typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef struct __CFString* CFMutableStringRef;
typedef const struct __CFArray* CFArrayRef;
typedef struct __CFArray* CFMutableArrayRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFDictionary* CFMutableDictionaryRef;
typedef const struct __CFData* CFDataRef;
typedef const struct __CFURL* CFURLRef;

typedef struct {
    CFIndex location;
    CFIndex length;
} CFRange;

typedef struct {
    CFIndex domain;
    SInt32 error;
} CFStreamError;

enum : CFStringEncoding {
    kCFStringEncodingMacRoman = 0,
    kCFStringEncodingWindowsLatin1 = 0x0500,
    kCFStringEncodingISOLatin1 = 0x0201,
    kCFStringEncodingASCII = 0x0600,
    kCFStringEncodingShiftJIS = 0x0A01,
    kCFStringEncodingUTF8 = 0x08000100,
};

enum : CFIndex { kCFNotFound = -1 };

extern "C" {

extern const CFAllocatorRef kCFAllocatorDefault;

void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);
CFTypeID CFStringGetTypeID(void);
CFTypeID CFDictionaryGetTypeID(void);

CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);

/// Null when the bytes are not valid in the encoding.
CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text, CFStringEncoding encoding);
/// `capacity` is a hint: 0.
CFMutableStringRef CFStringCreateMutable(CFAllocatorRef allocator, CFIndex capacity);
void CFStringAppend(CFMutableStringRef string, CFStringRef appended);
void CFStringAppendCString(CFMutableStringRef string, const char* text, CFStringEncoding encoding);
/// The strings between the separators: one more than there are separators, "" between two in a row.
CFArrayRef CFStringCreateArrayBySeparatingStrings(CFAllocatorRef allocator, CFStringRef string,
                                                  CFStringRef separator);
/// The first occurrence, found without options; kCFNotFound and length 0 when there is none.
CFRange CFStringFind(CFStringRef string, CFStringRef wanted, CFOptionFlags options);
Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size, CFStringEncoding encoding);
CFStringEncoding CFStringGetSystemEncoding(void);
/// The NSStringEncoding that means the same.
unsigned long CFStringConvertEncodingToNSStringEncoding(CFStringEncoding encoding);
/// The string's bytes in the encoding. What the encoding lacks becomes `lossByte`, which is '?'.
CFDataRef CFStringCreateExternalRepresentation(CFAllocatorRef allocator, CFStringRef string,
                                               CFStringEncoding encoding, UInt8 lossByte);

const UInt8* CFDataGetBytePtr(CFDataRef data);
CFIndex CFDataGetLength(CFDataRef data);

/// The URL as it was given, borrowed from it.
CFStringRef CFURLGetString(CFURLRef url);
/// "user@host:port", as far as it is there, as it stands in the URL; null when there is none.
CFStringRef CFURLCopyNetLocation(CFURLRef url);
/// The host with its percent escapes, as it stands in the URL; null when there is none.
CFStringRef CFURLCopyHostName(CFURLRef url);
/// All escapes are replaced: `leftEscaped` must be "". Null when they do not make UTF-8.
CFStringRef CFURLCreateStringByReplacingPercentEscapes(CFAllocatorRef allocator, CFStringRef string,
                                                       CFStringRef leftEscaped);

} // extern "C"

/// A constant string.
#define CFSTR(literal) ((CFStringRef)(const void*)@literal)
