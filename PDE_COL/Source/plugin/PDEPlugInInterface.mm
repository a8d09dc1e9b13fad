#include "plugin/PDEPlugInInterface.h"

#include "common/PDECommon+ControlTable.h"
#include "discovery/PDECommon+Discovery.h"
#include "panels/AdvancedColorOptions.h"
#include "panels/ColorOptions.h"
#include "panels/PresetConstraints.h"
#include "plugin/PainChangeController.h"
#include "profiles/ProfileListOperations.h"
#include "profilewindow/ProfileControl.h"

#include <cstdlib>

@implementation PDEPlugInInterface

- (id)initWithCallback:(id<PDEPluginCallback>)callback
{
    self = [super init];
    pdePluginCallbackObject = [callback retain];
    setting = [callback printSettings];
    session = [callback printSession];
    return self;
}

- (void)dealloc
{
    [painChange deallocPDEControlTableEachView];
    [interfaceObjects release];
    [super dealloc];
}

- (void)myLoad
{
    if (pdeMainView != nil)
        return;
    NSBundle* bundle = [NSBundle bundleForClass:[self class]];
    NSNib* nib = [[NSNib alloc] initWithNibNamed:@"PDEMain" bundle:bundle];
    [nib instantiateWithOwner:self topLevelObjects:&interfaceObjects];
    [interfaceObjects retain];
    [nib release];

    ppd = [pdePluginCallbackObject ppdFile];
    [painChange setPMPrintEachView:setting session:session];
    [painChange setPPDFileEachView:ppd];
    [painChange creatPDEControlTableEachView];
    PDEControlItem* tables[5] = {};
    SInt16 count = [painChange getControlDataEachView:tables count:5];
    compTable = [PDECommon commonControlTableCompound:tables count:count];
    [profileControl setPMPrint:setting session:session];
    [profileControl setConstTable:compTable];
    [painChange createPDEItemForPPDKeyEachView];
}

- (NSView*)panelView
{
    [self myLoad];
    if (VelPListIsAdminProfile() != 0)
        (void)[PDECommon commonGetProfilesFromMIB:session];
    return pdeMainView;
}

- (NSString*)panelName
{
    return localizedText(@"Color Options");
}

- (NSString*)panelKind
{
    return @"vendor.quorvex.pde.R4270.velco";
}

- (NSMutableArray*)supportedPPDOptionKeys
{
    NSMutableArray* keys = [NSMutableArray array];
    [self myLoad];
    [painChange addPPDArrayEachView:keys];
    return keys;
}

- (void)willShow
{
    [painChange ShowAdvancedToColorView];
}

- (BOOL)shouldHide
{
    return YES;
}

- (BOOL)restoreValuesAndReturnError:(NSError**)error
{
    [self myLoad];
    if (onColorView != nil && onAdvancedView != nil)
        [painChange defaultFromPPDInfoEachView];
    if (setting != nullptr && session != nullptr)
        [painChange getControlValueFromTickettEachView];
    if (pdeMainView != nil)
        vColorPresetConstraints(compTable);
    return YES;
}

- (BOOL)saveValuesAndReturnError:(NSError**)error
{
    if (setting != nullptr && session != nullptr && onColorView != nil && onAdvancedView != nil)
        [painChange setControlValueToTicketEachView];
    return YES;
}

- (NSMutableDictionary*)summaryInfo
{
    [self myLoad];
    NSMutableArray* order = [NSMutableArray array];
    NSMutableDictionary* summary = [NSMutableDictionary dictionary];
    if (onColorView != nil && onAdvancedView != nil)
        [painChange getSummaryTextEachView:summary addArray:order];
    [summary setObject:order forKey:@"Summary Display Order"];
    return summary;
}

- (BOOL)shouldPrint
{
    [painChange changeAdvancedItemAccodingQuickColor];
    [onAdvancedView setControlValueToTicket];
    return YES;
}

- (void)PPDOptionKeyValueDidChange:(NSString*)optionKey ppdChoice:(NSString*)choice
{
}

- (IBAction)constraints:(id)sender
{
    vColorPresetConstraints(compTable);
}

- (IBAction)selectItem:(id)sender
{
    vColorPresetConstraints([onColorView getControlData]);
}

- (void)terminate
{
    [pdePluginCallbackObject release];
    pdePluginCallbackObject = nil;
    [profileControl setConstTable:nullptr];
    free(compTable);
    compTable = nullptr;
}

// What the dialog of macOS sends in place of `terminate`. The argument is not looked at.
- (void)printWindowWillClose:(id)sender
{
    [self terminate];
}

@end
