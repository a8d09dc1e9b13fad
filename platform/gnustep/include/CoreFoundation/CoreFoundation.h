#pragma once

// Core Foundation on top of GNUstep Foundation: every object is the Foundation object of the same kind, so
// that the two are interchangeable, as on macOS. Only what the plug-in calls is here. The functions take and
// give what Apple documents; like there, a null argument is the caller's fault unless said otherwise.

#include <cstdint>

typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef int16_t SInt16;
typedef int32_t SInt32;
typedef uint32_t UInt32;
typedef int32_t OSStatus;
typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef UInt32 CFStringEncoding;
typedef double CFTimeInterval;

typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFArray* CFArrayRef;
typedef struct __CFArray* CFMutableArrayRef;
typedef const struct __CFData* CFDataRef;
typedef const struct __CFURL* CFURLRef;

typedef struct {
    CFIndex domain;
    SInt32 error;
} CFStreamError;

enum : CFStringEncoding {
    kCFStringEncodingMacRoman = 0,
    kCFStringEncodingWindowsLatin1 = 0x0500,
    kCFStringEncodingISOLatin1 = 0x0201,
    kCFStringEncodingShiftJIS = 0x0A01,
    kCFStringEncodingUTF8 = 0x08000100,
};

extern "C" {

extern const CFAllocatorRef kCFAllocatorDefault;

void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);
CFTypeID CFStringGetTypeID(void);
CFTypeID CFDictionaryGetTypeID(void);

CFStringEncoding CFStringGetSystemEncoding(void);
/// The NSStringEncoding that means the same.
unsigned long CFStringConvertEncodingToNSStringEncoding(CFStringEncoding encoding);
/// The string's bytes in the encoding. What the encoding lacks becomes `lossByte`, which is '?'.
CFDataRef CFStringCreateExternalRepresentation(CFAllocatorRef allocator, CFStringRef string,
                                               CFStringEncoding encoding, UInt8 lossByte);

const UInt8* CFDataGetBytePtr(CFDataRef data);
CFIndex CFDataGetLength(CFDataRef data);

/// "user@host:port", as far as it is there, as it stands in the URL; null when there is none.
CFStringRef CFURLCopyNetLocation(CFURLRef url);

} // extern "C"
