#include "PanelSession.h"

@implementation PlugIn

- (instancetype)initWithPath:(NSString*)path error:(NSString**)error
{
    self = [super init];
    NSBundle* bundle = [NSBundle bundleWithPath:path];
    Class principalClass = [bundle load] ? [bundle principalClass] : Nil;
    if ([principalClass instancesRespondToSelector:@selector(PDEPanelsForType:withHostInfo:)]) {
        principal_ = [[principalClass alloc] init];
        if ([principal_ initWithBundle:bundle])
            return self;
    }
    *error =
        [NSString stringWithFormat:bundle == nil ? @"%@: there is no bundle"
                                                 : @"%@: not a print dialog extension that can be loaded",
                                   path];
    [self release];
    return nil;
}

- (void)dealloc
{
    [principal_ release];
    [super dealloc];
}

- (id<PDEPlugInProtocol>)principal
{
    return principal_;
}

@end

@implementation PanelSession

- (instancetype)initWithPlugIn:(PlugIn*)plugIn
                      settings:(PMSettingsObject*)settings
                       printer:(PMPrinterObject*)printer
{
    self = [super init];
    settings_ = [settings retain];
    session_ = [[PMSessionObject alloc] initWithPrinter:printer];
    panels_ = [[[plugIn principal] PDEPanelsForType:PDE_PRINT_DIALOG_TYPE withHostInfo:self] retain];
    return self;
}

- (void)dealloc
{
    [settings_ release];
    [session_ release];
    [panels_ release];
    [super dealloc];
}

- (PMPrintSettings)printSettings
{
    return [settings_ handle];
}

- (PMPrintSession)printSession
{
    return [session_ handle];
}

- (ppd_file_t*)ppdFile
{
    return [[session_ printer] ppdFile];
}

- (NSArray*)panels
{
    return panels_;
}

- (id<PDEPanelProtocol>)panel
{
    return [panels_ count] > 0 ? [panels_ objectAtIndex:0] : nil;
}

- (BOOL)offersOptionsOf:(PMPrinterObject*)printer
{
    for (NSString* key in [[self panel] supportedPPDOptionKeys])
        if (ppdFindOption([printer ppdFile], [key UTF8String]) != nullptr)
            return YES;
    return NO;
}

- (void)terminate
{
    // The panels hold this object until `terminate`, and it must outlive them.
    [[self retain] autorelease];
    for (id<PDEPanelProtocol> panel in panels_)
        [panel terminate];
    [panels_ release];
    panels_ = nil;
}

@end
