#include "Presets.h"

#include <cstdlib>

static NSString* configurationFolder()
{
    const char* folder = getenv("XDG_CONFIG_HOME");
    // A relative path in the variable is to be ignored.
    if (folder != nullptr && folder[0] == '/')
        return [NSString stringWithUTF8String:folder];
    // NSHomeDirectory goes by the password database alone.
    const char* home = getenv("HOME");
    NSString* path =
        home != nullptr && home[0] == '/' ? [NSString stringWithUTF8String:home] : NSHomeDirectory();
    return [path stringByAppendingPathComponent:@".config"];
}

@implementation Presets

- (instancetype)initWithFolder:(NSString*)folder
{
    self = [super init];
    NSString* own = [configurationFolder() stringByAppendingPathComponent:@"r4270-printdialog"];
    folder_ = [[own stringByAppendingPathComponent:folder] retain];
    return self;
}

- (void)dealloc
{
    [folder_ release];
    [super dealloc];
}

- (NSString*)fileOfPreset:(NSString*)name
{
    return [folder_ stringByAppendingPathComponent:[name stringByAppendingString:@".plist"]];
}

- (NSArray*)names
{
    NSMutableArray* names = [NSMutableArray array];
    for (NSString* file in [[NSFileManager defaultManager] directoryContentsAtPath:folder_])
        if ([[file pathExtension] isEqual:@"plist"])
            [names addObject:[file stringByDeletingPathExtension]];
    return [names sortedArrayUsingSelector:@selector(caseInsensitiveCompare:)];
}

- (BOOL)acceptsName:(NSString*)name
{
    if ([name length] == 0 || [name length] > 100 || [name hasPrefix:@"."])
        return NO;
    NSMutableCharacterSet* refused = [[[NSCharacterSet controlCharacterSet] mutableCopy] autorelease];
    [refused addCharactersInString:@"/"];
    return [name rangeOfCharacterFromSet:refused].location == NSNotFound;
}

- (BOOL)save:(NSDictionary*)values name:(NSString*)name
{
    if (![self acceptsName:name])
        return NO;
    [[NSFileManager defaultManager] createDirectoryAtPath:folder_
                              withIntermediateDirectories:YES
                                               attributes:nil
                                                    error:nullptr];
    PMSettingsObject* settings = [[[PMSettingsObject alloc] init] autorelease];
    [settings replaceValues:values];
    return [settings writeToFile:[self fileOfPreset:name]];
}

- (NSDictionary*)valuesOfPreset:(NSString*)name error:(NSString**)error
{
    return [PMSettingsObject valuesOfFile:[self fileOfPreset:name] error:error];
}

- (void)removePreset:(NSString*)name
{
    if ([self acceptsName:name])
        [[NSFileManager defaultManager] removeFileAtPath:[self fileOfPreset:name] handler:nil];
}

@end
