#include <CupsServer.h>
#include <PrintingObjects.h>

#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr off_t kLargestSettingsFile = off_t{4} * 1024 * 1024;
constexpr int kDeepestSettings = 16; // a choice is in the third dictionary
constexpr int kConnectMilliseconds = 1000;
constexpr double kSilentSeconds = 5;

/// Nil, and the reason in `error`.
id failed(NSString** error, NSString* format, ...) NS_FORMAT_FUNCTION(2, 3);
id failed(NSString** error, NSString* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    if (error != nullptr)
        *error = [[[NSString alloc] initWithFormat:format arguments:arguments] autorelease];
    va_end(arguments);
    return nil;
}

/// Whether containers in `value` are nested so deep at the most.
bool isShallow(id value, int levels)
{
    bool isDictionary = [value isKindOfClass:[NSDictionary class]];
    if (!isDictionary && ![value isKindOfClass:[NSArray class]])
        return true;
    for (id inner in isDictionary ? [value allValues] : value) {
        if (levels == 0 || !isShallow(inner, levels - 1))
            return false;
    }
    return true;
}

/// The toolkit's first language as a locale's name.
std::string toolkitLanguage()
{
    NSString* language = [[NSLocale preferredLanguages] objectAtIndex:0];
    if ([language isEqual:@"zh-Hans"])
        return "zh_CN";
    if ([language isEqual:@"zh-Hant"])
        return "zh_TW";
    return [[language stringByReplacingOccurrencesOfString:@"-" withString:@"_"] UTF8String];
}

/// Opens a PPD with its texts in the toolkit's language. libcups goes by the locale instead, and reads no
/// other translation from the file. Only where the locale is "C", as it is for a language whose locale is not
/// installed, it goes by the variable.
ppd_file_t* openLocalised(const char* path)
{
    constexpr char kVariable[] = "LC_MESSAGES";
    std::optional<std::string> variable;
    if (const char* value = getenv(kVariable))
        variable = value;
    std::string locale = setlocale(LC_MESSAGES, nullptr);
    setlocale(LC_MESSAGES, "C");
    setenv(kVariable, toolkitLanguage().c_str(), 1);
    ppd_file_t* ppd = ppdOpenFile(path);
    (void)ppdLocalize(ppd); // refuses what could not be opened
    if (variable)
        setenv(kVariable, variable->c_str(), 1);
    else
        unsetenv(kVariable);
    setlocale(LC_MESSAGES, locale.c_str());
    return ppd;
}

NSMutableDictionary* valuesOf(PMPrintSettings handle)
{
    return [(PMSettingsObject*)(void*)handle values];
}

} // namespace

CupsServer connectToCups()
{
    CupsServer server(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                                   kConnectMilliseconds, nullptr));
    if (server)
        httpSetTimeout(
            server.get(), kSilentSeconds, [](http_t*, void*) { return 0; }, nullptr);
    return server;
}

@implementation PMSettingsObject

- (instancetype)init
{
    self = [super init];
    values_ = [[NSMutableDictionary alloc] init];
    return self;
}

- (void)dealloc
{
    [values_ release];
    [super dealloc];
}

+ (NSDictionary*)valuesOfFile:(NSString*)path error:(NSString**)error
{
    struct stat info;
    const char* file = [path fileSystemRepresentation];
    if (stat(file, &info) != 0)
        return failed(error, @"%@: %s", path, strerror(errno));
    if (!S_ISREG(info.st_mode) || info.st_size > kLargestSettingsFile)
        return failed(error, @"%@: not a file of print settings", path);
    NSData* data = [NSData dataWithContentsOfFile:path];
    if (data == nil)
        return failed(error, @"%@: cannot be read", path);
    // Only the XML form: the reader takes other bytes for older forms, some of which it cannot bear.
    if ([data length] == 0 || *static_cast<const char*>([data bytes]) != '<')
        return failed(error, @"%@: not an XML property list", path);
    NSDictionary* values = nil;
    @try {
        values = [NSPropertyListSerialization propertyListWithData:data
                                                           options:NSPropertyListImmutable
                                                            format:nullptr
                                                             error:nullptr];
    } @catch (NSException* unreadable) {
        // The reader raises for some that it cannot read.
    }
    if (!isShallow(values, kDeepestSettings)) {
        [values retain]; // for ever: to free it would take more of the stack than there may be
        return failed(error, @"%@: nested too deep", path);
    }
    if (![values isKindOfClass:[NSDictionary class]])
        return failed(error, @"%@: does not hold a dictionary", path);
    return values;
}

- (BOOL)writeToFile:(NSString*)path
{
    NSData* data = [NSPropertyListSerialization dataWithPropertyList:values_
                                                              format:NSPropertyListXMLFormat_v1_0
                                                             options:0
                                                               error:nullptr];
    return data != nil && [data writeToFile:path atomically:YES];
}

- (NSMutableDictionary*)values
{
    return values_;
}

- (void)replaceValues:(NSDictionary*)values
{
    [values_ setDictionary:values];
}

- (PMPrintSettings)handle
{
    return (PMPrintSettings)(void*)self;
}

@end

@implementation PMPrinterObject

- (instancetype)initWithIdentifier:(NSString*)identifier
                         deviceURI:(NSString*)uri
                              file:(NSString*)ppdPath
                             error:(NSString**)error
{
    self = [super init];
    identifier_ = [identifier copy];
    deviceURI_ = [uri copy];
    ppdFile_ = openLocalised([ppdPath fileSystemRepresentation]);
    if (ppdFile_ == nullptr) {
        int line = 0;
        ppd_status_t status = ppdLastError(&line);
        NSString* reason = [NSString stringWithUTF8String:ppdErrorString(status)];
        [self release];
        return failed(error, @"%@, line %d: %@", ppdPath, line, reason);
    }
    ppdMarkDefaults(ppdFile_);
    return self;
}

- (instancetype)initWithQueue:(NSString*)queue error:(NSString**)error
{
    CupsServer server = connectToCups();
    if (!server) {
        [self release];
        return failed(error, @"The printing system (%s) does not answer", cupsServer());
    }
    NSString* uri = nil;
    char ppdPath[1024] = "";
    cups_dest_t* destination = cupsGetNamedDest(server.get(), [queue UTF8String], nullptr);
    if (destination != nullptr) {
        const char* value = cupsGetOption("device-uri", destination->num_options, destination->options);
        uri = value != nullptr ? [NSString stringWithUTF8String:value] : nil;
        time_t anyVersion = 0;
        cupsGetPPD3(server.get(), [queue UTF8String], &anyVersion, ppdPath, sizeof ppdPath);
        cupsFreeDests(1, destination);
    }
    if (ppdPath[0] == '\0') {
        [self release];
        return failed(error,
                      destination == nullptr ? @"There is no queue named %@"
                                             : @"The queue %@ has no PPD file, which this dialog needs",
                      queue);
    }
    self = [self initWithIdentifier:queue
                          deviceURI:uri
                               file:[NSString stringWithUTF8String:ppdPath]
                              error:error];
    unlink(ppdPath);
    return self;
}

- (void)dealloc
{
    [identifier_ release];
    [deviceURI_ release];
    if (ppdFile_ != nullptr)
        ppdClose(ppdFile_);
    [super dealloc];
}

- (NSString*)identifier
{
    return identifier_;
}

- (NSString*)deviceURI
{
    return deviceURI_;
}

- (ppd_file_t*)ppdFile
{
    return ppdFile_;
}

- (PMPrinter)handle
{
    return (PMPrinter)(void*)self;
}

@end

@implementation PMSessionObject

- (instancetype)initWithPrinter:(PMPrinterObject*)printer
{
    self = [super init];
    printer_ = [printer retain];
    data_ = [[NSMutableDictionary alloc] init];
    return self;
}

- (void)dealloc
{
    [printer_ release];
    [data_ release];
    [super dealloc];
}

- (void)setData:(id)value forKey:(NSString*)key
{
    [data_ setValue:value forKey:key];
}

- (id)dataForKey:(NSString*)key
{
    return [data_ objectForKey:key];
}

- (PMPrinterObject*)printer
{
    return printer_;
}

- (PMPrintSession)handle
{
    return (PMPrintSession)(void*)self;
}

@end

OSStatus PMPrintSettingsGetValue(PMPrintSettings settings, CFStringRef key, CFTypeRef* value)
{
    if (settings == nullptr || key == nullptr || value == nullptr)
        return kPMInvalidParameter;
    *value = [valuesOf(settings) objectForKey:(NSString*)key];
    return *value != nullptr ? kPMNoError : kPMKeyNotFound;
}

OSStatus PMPrintSettingsSetValue(PMPrintSettings settings, CFStringRef key, CFTypeRef value, Boolean)
{
    if (settings == nullptr || key == nullptr)
        return kPMInvalidParameter;
    id kept = (id)value;
    if ([kept isKindOfClass:[NSDictionary class]])
        kept = [[[NSDictionary alloc] initWithDictionary:kept copyItems:YES] autorelease];
    [valuesOf(settings) setValue:kept forKey:(NSString*)key];
    return kPMNoError;
}

OSStatus PMSessionGetCurrentPrinter(PMPrintSession session, PMPrinter* printer)
{
    if (session == nullptr || printer == nullptr)
        return kPMInvalidParameter;
    *printer = [[(PMSessionObject*)(void*)session printer] handle];
    return *printer != nullptr ? kPMNoError : kPMNoDefaultPrinter;
}

OSStatus PMSessionGetDataFromSession(PMPrintSession session, CFStringRef key, CFTypeRef* data)
{
    if (session == nullptr || key == nullptr || data == nullptr)
        return kPMInvalidParameter;
    *data = [(PMSessionObject*)(void*)session dataForKey:(NSString*)key];
    return *data != nullptr ? kPMNoError : kPMKeyNotFound;
}

CFStringRef PMPrinterGetID(PMPrinter printer)
{
    return (CFStringRef)[(PMPrinterObject*)(void*)printer identifier];
}

OSStatus PMPrinterCopyDeviceURI(PMPrinter printer, CFURLRef* uri)
{
    if (printer == nullptr || uri == nullptr)
        return kPMInvalidParameter;
    *uri = nullptr;
    NSString* address = [(PMPrinterObject*)(void*)printer deviceURI];
    // What has no scheme would become a relative URL, which is no device's.
    NSURL* url = address != nil ? [NSURL URLWithString:address] : nil;
    if ([[url scheme] length] == 0)
        return kPMGeneralError;
    *uri = (CFURLRef)[url retain];
    return kPMNoError;
}
