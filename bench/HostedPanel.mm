#include "HostedPanel.h"

#include <cstdlib>

@interface PanelDialog : NSObject <PDEPluginCallback>
{
@public
    PMSettingsObject* settings_;
    PMSessionObject* session_;
}
@end

@implementation PanelDialog
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
@end

HostedPanel::HostedPanel(const std::filesystem::path& ppd)
{
    printer_ = [[PMPrinterObject alloc] initWithIdentifier:@"Test_Queue"
                                                 deviceURI:nil
                                                      file:[NSString stringWithUTF8String:ppd.c_str()]
                                                     error:nullptr];
    session_ = [[PMSessionObject alloc] initWithPrinter:printer_];
    settings_ = [[PMSettingsObject alloc] init];
    PanelDialog* dialog = [[PanelDialog alloc] init];
    dialog->settings_ = settings_;
    dialog->session_ = session_;
    dialog_ = dialog;
    NSBundle* bundle = [NSBundle bundleWithPath:@PDE_BUILD_DIR "/R4270.plugin"];
    id<PDEPlugInProtocol> plugIn = [[[bundle principalClass] alloc] init];
    [plugIn initWithBundle:bundle];
    panel_ = [[[plugIn PDEPanelsForType:PDE_PRINT_DIALOG_TYPE withHostInfo:dialog_] lastObject] retain];
    [plugIn release];
    if (printer_ == nil || panel_ == nil)
        abort();
}

HostedPanel::~HostedPanel()
{
    [panel_ terminate];
    [panel_ release];
    [dialog_ release];
    [settings_ release];
    [session_ release];
    [printer_ release];
}
