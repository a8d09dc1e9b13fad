#include "plugin/Logging.h"

#include "common/ControlTable.h"

#include <cstdarg>

void MyLog(FILE* stream, const char* format, ...)
{
    NSString* objectFormat = [[NSString alloc] initWithUTF8String:format];
    if (objectFormat == nil)
        return;
    va_list arguments;
    va_start(arguments, format);
    NSString* text = [[NSString alloc] initWithFormat:objectFormat arguments:arguments];
    va_end(arguments);
    CFDataRef bytes = CFStringCreateExternalRepresentation(kCFAllocatorDefault, (CFStringRef)text,
                                                           CFStringGetSystemEncoding(), '?');
    if (bytes != nullptr) {
        (void)fprintf(stream, "%.*s", (int)CFDataGetLength(bytes), (const char*)CFDataGetBytePtr(bytes));
        (void)fflush(stream);
        CFRelease(bytes);
    }
    [text release];
    [objectFormat release];
}

// `frame` has places for the object and for the caller's format. The object's text is no format: its percent
// signs are doubled.
static void logFramed(NSString* frame, id object, NSString* format, va_list arguments)
{
    NSString* name = [[object description] stringByReplacingOccurrencesOfString:@"%" withString:@"%%"];
    NSLogv([NSString stringWithFormat:frame, name, format], arguments);
}

void _PDEProlog(id object, NSString* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    logFramed(@"BEGIN self(%@) %@", object, format, arguments);
    va_end(arguments);
}

void _PDEEpilog(id object, NSString* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    logFramed(@"END self(%@) %@", object, format, arguments);
    va_end(arguments);
}

void _PDELog(id object, NSString* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    logFramed(@"LOG self(%@): %@", object, format, arguments);
    va_end(arguments);
}

void _DEBUGControlTable(const PDEControlItem* table)
{
    for (SInt16 i = 0; hasRow(table, i); ++i)
        continue;
}
