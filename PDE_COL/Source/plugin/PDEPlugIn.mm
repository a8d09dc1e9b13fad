#include "plugin/PDEPlugIn.h"

#include "plugin/PDEPlugInInterface.h"

NSBundle* pluginBundle = nil;

@implementation PDEPlugIn

- (BOOL)initWithBundle:(NSBundle*)bundle
{
    if (pluginBundle == nil)
        pluginBundle = [bundle retain];
    return YES;
}

- (NSArray*)PDEPanelsForType:(NSString*)type withHostInfo:(id)host
{
    NSMutableArray* panels = [NSMutableArray array];
    if ([type isEqualToString:PDE_PRINT_DIALOG_TYPE])
        [panels addObject:[[[PDEPlugInInterface alloc] initWithCallback:host] autorelease]];
    return [panels count] > 0 ? panels : nil;
}

@end
