#include "common/PDECommon.h"

@implementation PDECommon
@end
