// Loading an interface file, with the ownership that macOS has: top-level objects belong to the array that
// the caller gets, and nothing else of the file stays in memory.

#import <AppKit/AppKit.h>
#include <objc/runtime.h>

// This category is here to take the toolkit's method's place.
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

typedef id (*DocumentInitialiser)(id, SEL, NSData*, NSUInteger, NSError**);
static DocumentInitialiser initDocument = nullptr;
static NSMutableArray* documentsOfLoad = nil;

static id initAndNoteDocument(id self, SEL selector, NSData* data, NSUInteger mask, NSError** error)
{
    id document = initDocument(self, selector, data, mask, error);
    if (document != nil)
        [documentsOfLoad addObject:document];
    return document;
}

// The toolkit's loader forgets the XML document that it makes: a third of a megabyte for a panel.
static void releaseForgottenDocuments()
{
    for (id document in documentsOfLoad) {
        if ([document retainCount] > 1)
            [document release];
    }
    [documentsOfLoad release];
    documentsOfLoad = nil;
}

// Whether the loader left a reference of its own on the top-level objects, which nobody would release. A
// root view shows it: nothing but the array holds one.
static bool hasForgottenReferences(NSArray* objects)
{
    for (id object in objects) {
        if ([object isKindOfClass:[NSView class]] && [object superview] == nil)
            return [object retainCount] > 1;
    }
    return false;
}

@implementation NSNib (TopLevelOwnership)

- (BOOL)instantiateWithOwner:(id)owner topLevelObjects:(NSArray**)topLevelObjects
{
    Method method = class_getInstanceMethod([NSXMLDocument class], @selector(initWithData:options:error:));
    initDocument = (DocumentInitialiser)method_getImplementation(method);
    documentsOfLoad = [[NSMutableArray alloc] init];
    method_setImplementation(method, (IMP)initAndNoteDocument);
    NSArray* objects = nil;
    BOOL loaded = NO;
    @try {
        @autoreleasepool {
            loaded = [self instantiateNibWithOwner:owner topLevelObjects:&objects];
            [objects retain];
        }
    } @finally {
        method_setImplementation(method, (IMP)initDocument);
        releaseForgottenDocuments();
    }
    if (hasForgottenReferences(objects)) {
        for (id object in objects)
            [object release];
    }
    if (topLevelObjects != nullptr)
        *topLevelObjects = [objects autorelease];
    return loaded;
}

@end
