#include "Text.h"

#include "Options.h"

std::string textOf(NSString* string)
{
    const char* text = [string UTF8String];
    return text != nullptr ? text : "";
}

NSString* stringOf(const std::string& text)
{
    NSString* result = nil;
    for (NSStringEncoding encoding : {NSUTF8StringEncoding, NSISOLatin1StringEncoding})
        if (result == nil)
            result = [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:encoding];
    return [result autorelease];
}

NSString* localized(NSString* english)
{
    static NSBundle* texts = [[NSBundle alloc] initWithPath:stringOf(textsFolder())];
    return texts != nil ? [texts localizedStringForKey:english value:english table:nil] : english;
}
