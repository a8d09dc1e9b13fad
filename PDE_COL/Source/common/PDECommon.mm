#include "common/PDECommon.h"

@implementation PDECommon
@end

NSString* asciiText(const char* bytes)
{
    return [NSString stringWithCString:bytes encoding:NSASCIIStringEncoding];
}

NSString* localizedText(NSString* key)
{
    NSBundle* bundle = [NSBundle bundleForClass:[PDECommon class]];
    return key != nil ? [bundle localizedStringForKey:key value:nil table:nil] : nil;
}
