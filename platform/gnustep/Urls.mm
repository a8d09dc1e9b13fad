#include <CoreFoundation/CoreFoundation.h>

#import <Foundation/Foundation.h>

CFStringRef CFURLGetString(CFURLRef url)
{
    // Not absoluteString, which writes the scheme in its own way.
    return (CFStringRef)[(NSURL*)url relativeString];
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

// Not NSURL's host, which is without the escapes: a "%2E" in the name of a service must not become one of
// the full stops between the parts.
CFStringRef CFURLCopyHostName(CFURLRef url)
{
    NSString* host = [(NSString*)CFURLCopyNetLocation(url) autorelease];
    if (host == nil)
        return nullptr;
    NSRange at = [host rangeOfString:@"@" options:NSBackwardsSearch];
    if (at.location != NSNotFound)
        host = [host substringFromIndex:NSMaxRange(at)];
    NSRange colon = [host rangeOfString:@":"];
    if (colon.location != NSNotFound)
        host = [host substringToIndex:colon.location];
    return [host length] == 0 ? nullptr : (CFStringRef)[host copy];
}

CFStringRef CFURLCreateStringByReplacingPercentEscapes(CFAllocatorRef, CFStringRef string, CFStringRef)
{
    NSString* text = (NSString*)string;
    return (CFStringRef)[[text stringByReplacingPercentEscapesUsingEncoding:NSUTF8StringEncoding] copy];
}
