#include "PageCount.h"

#include "Text.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <fstream>

static const int kMostPages = 1000000;

/// By the comment that PostScript has at its beginning, or there puts off to its end; 0 without one.
static int pagesOfPostScript(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string text(4096, '\0');
    const auto part = static_cast<std::streamoff>(text.size());
    for (bool atEnd : {false, true}) {
        file.clear();
        file.seekg(atEnd ? -part : 0, atEnd ? std::ios::end : std::ios::beg);
        file.read(text.data(), part);
        if (!atEnd && !text.starts_with("%!"))
            return 0;
        size_t comment = atEnd ? text.rfind("%%Pages:") : text.find("%%Pages:");
        int pages = comment == std::string::npos ? 0 : atoi(text.c_str() + comment + strlen("%%Pages:"));
        if (pages > 0)
            return pages;
    }
    return 0;
}

/// 0 for what is no PDF, and where the program that counts them is missing or takes too long.
static int pagesOfPdf(NSString* path)
{
    NSTask* task = [[[NSTask alloc] init] autorelease];
    NSPipe* output = [NSPipe pipe];
    [task setLaunchPath:@"/usr/bin/timeout"];
    [task setArguments:@[
        @"5", @"pdfinfo", [path hasPrefix:@"-"] ? [@"./" stringByAppendingString:path] : path
    ]];
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
        return found == job.options.end() ? 1 : std::clamp(atoi(found->second.c_str()), 1, 9999);
    };
    auto ranges = job.options.find("page-ranges");
    int64_t sides = 0;
    for (const std::string& file : job.files) {
        int pages = pagesOfPostScript(file);
        pages = std::clamp(pages > 0 ? pages : pagesOfPdf(stringOf(file)), 0, kMostPages);
        if (pages == 0)
            return 0;
        // Ranges are of sides: the filters put pages onto them first.
        pages = (pages + number("number-up") - 1) / number("number-up");
        sides += pagesIn(ranges != job.options.end() ? stringOf(ranges->second) : @"", pages);
    }
    return static_cast<int>(std::min<int64_t>(sides * number("copies"), INT_MAX));
}
