#include "plugin/MainView.h"

@implementation MainView
@end
