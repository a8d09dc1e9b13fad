#include "PageCount.h"

#include "Text.h"

#include <algorithm>

/// 0 for what is no PDF, and where the program that counts them is missing.
static int pagesOfFile(NSString* file)
{
    NSTask* task = [[[NSTask alloc] init] autorelease];
    NSPipe* output = [NSPipe pipe];
    [task setLaunchPath:@"/usr/bin/pdfinfo"];
    [task setArguments:@[ file ]];
    [task setStandardOutput:output];
    [task setStandardError:[NSFileHandle fileHandleWithNullDevice]];
    @try {
        [task launch];
    } @catch (NSException*) {
        return 0;
    }
    NSData* data = [[output fileHandleForReading] readDataToEndOfFile];
    [task waitUntilExit];
    NSString* text = [[[NSString alloc] initWithData:data encoding:NSISOLatin1StringEncoding] autorelease];
    NSRange label = [text rangeOfString:@"\nPages:"];
    return label.location == NSNotFound ? 0 : [[text substringFromIndex:NSMaxRange(label)] intValue];
}

/// How many of `pages` are in ranges such as "1-3,5"; all for "".
static int pagesIn(NSString* ranges, int pages)
{
    int count = [ranges length] == 0 ? pages : 0;
    for (NSString* range in [ranges length] > 0 ? [ranges componentsSeparatedByString:@","] : @[]) {
        NSArray* ends = [range componentsSeparatedByString:@"-"];
        int last = std::min([[ends lastObject] intValue], pages);
        count += std::max(0, last - [[ends objectAtIndex:0] intValue] + 1);
    }
    return count;
}

int sidesOfJob(const PrintJob& job)
{
    auto number = [&job](const char* option) {
        auto found = job.options.find(option);
        return found == job.options.end() ? 1 : std::max(1, [stringOf(found->second) intValue]);
    };
    auto ranges = job.options.find("page-ranges");
    int sides = 0;
    for (const std::string& file : job.files) {
        NSString* path =
            [stringOf(file) hasPrefix:@"-"] ? [@"./" stringByAppendingString:stringOf(file)] : stringOf(file);
        int pages = pagesOfFile(path);
        if (pages == 0)
            return 0;
        pages = pagesIn(ranges != job.options.end() ? stringOf(ranges->second) : @"", pages);
        sides += (pages + number("number-up") - 1) / number("number-up");
    }
    return sides * number("copies");
}
