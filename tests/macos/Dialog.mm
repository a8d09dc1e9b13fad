// The panel and its principal class against the protocols of the print dialog of macOS as they are
// documented: what the dialog sends is answered, with the types that it expects, and the plug-in asks it for
// nothing else.

#include "plugin/PDEPlugIn.h"
#include "plugin/PDEPlugInInterface.h"

@protocol DocumentedPlugIn
- (BOOL)initWithBundle:(NSBundle*)bundle;
- (NSArray*)PDEPanelsForType:(NSString*)type withHostInfo:(id)host;
@end

@protocol DocumentedPanel
- (NSString*)panelKind;
- (NSString*)panelName;
- (NSView*)panelView;
- (void)willShow;
- (BOOL)shouldHide;
- (BOOL)restoreValuesAndReturnError:(NSError**)error;
- (BOOL)saveValuesAndReturnError:(NSError**)error;
- (NSArray*)supportedPPDOptionKeys;
- (void)PPDOptionKeyValueDidChange:(NSString*)option ppdChoice:(NSString*)choice;
- (NSDictionary*)summaryInfo;
- (BOOL)shouldPrint;
@end

@interface PDEPlugIn () <DocumentedPlugIn>
@end
@interface PDEPlugInInterface () <DocumentedPanel>
@end
#include "plugin/PDEPlugIn.mm"
#include "plugin/PDEPlugInInterface.mm"
#include "profilewindow/ProfileControl+Table.mm"

/// The dialog's side, which answers no more than this.
@interface DocumentedCallback : NSObject <PDEPluginCallback>
@property (readonly) PMPrintSession printSession;
@property (readonly) PMPrintSettings printSettings;
@property (readonly) ppd_file_t* ppdFile;

@end
@implementation DocumentedCallback
@end

// The compiler compares what a category defines with a protocol only where any object may be meant.
[[maybe_unused]] static void askDelegates(id object)
{
    (void)[object numberOfRowsInTableView:nil];
    (void)[object tableView:nil objectValueForTableColumn:nil row:0];
    [object tableView:nil setObjectValue:nil forTableColumn:nil row:0];
    [object tableViewSelectionDidChange:nil];
    (void)[object selectionShouldChangeInTableView:nil];
    (void)[object tableView:nil shouldSelectRow:0];
}
