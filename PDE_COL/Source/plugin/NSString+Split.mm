#include "plugin/NSString+Split.h"

@implementation NSString (Split)

- (NSArray*)splitCharEvery:(unsigned int)count
{
    if ([self length] <= count)
        return [NSArray arrayWithObject:self];
    NSMutableArray* pieces = [NSMutableArray array];
    for (NSUInteger start = 0; count > 0 && start < [self length]; start += count) {
        NSUInteger length = MIN((NSUInteger)count, [self length] - start);
        [pieces addObject:[self substringWithRange:NSMakeRange(start, length)]];
    }
    return [[pieces copy] autorelease];
}

@end
