#include "InterfaceOwner.h"

#include <benchmark/benchmark.h>

@implementation InterfaceOwner

+ (InterfaceOwner*)loadInterface
{
    NSURL* file = [NSURL fileURLWithPath:@PDE_SOURCE_DIR "/PDE_COL/Resources/PDEMain.xib"];
    NSNib* nib = [[[NSNib alloc] initWithContentsOfURL:file] autorelease];
    InterfaceOwner* owner = [[[InterfaceOwner alloc] init] autorelease];
    [nib instantiateWithOwner:owner topLevelObjects:nullptr];
    return owner;
}

- (void)constraints:(id)sender
{
}

- (void)selectItem:(id)sender
{
}

@end

int main(int argc, char** argv)
{
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    [NSApplication sharedApplication];
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    [pool drain];
    return 0;
}
