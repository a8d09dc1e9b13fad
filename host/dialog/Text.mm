#include "Text.h"

#include "Options.h"

std::string textOf(NSString* string)
{
    const char* text = [string UTF8String];
    return text != nullptr ? text : "";
}

NSString* stringOf(const std::string& text)
{
    return [[[NSString alloc] initWithBytes:text.data() length:text.size()
                                   encoding:NSUTF8StringEncoding] autorelease];
}

NSString* localized(NSString* english)
{
    static NSBundle* texts = [[NSBundle alloc] initWithPath:stringOf(textsFolder())];
    return texts != nil ? [texts localizedStringForKey:english value:english table:nil] : english;
}
