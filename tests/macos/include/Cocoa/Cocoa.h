#pragma once

// Foundation and AppKit as their documentation declares them, as far as the plug-in uses them.

#include <ApplicationServices/ApplicationServices.h>
#include <cstdarg>

typedef signed char BOOL; // on Intel; the compiler complains of more than with the bool of the newer Macs
#define YES ((BOOL)1)
#define NO ((BOOL)0)
#define nil nullptr
#define MIN(a, b) ((a) < (b) ? (a) : (b))
typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double CGFloat;
typedef unsigned short unichar;
typedef NSUInteger NSStringEncoding;
typedef NSInteger NSModalResponse;
typedef struct {
    CGFloat x, y;
} NSPoint;
typedef struct {
    CGFloat width, height;
} NSSize;
typedef struct {
    NSPoint origin;
    NSSize size;
} NSRect;
typedef struct {
    NSUInteger location, length;
} NSRange;
enum : NSStringEncoding {
    NSASCIIStringEncoding = 1,
    NSUTF8StringEncoding = 4,
    NSISOLatin1StringEncoding = 5
};
enum : NSStringEncoding { NSShiftJISStringEncoding = 8, NSWindowsCP1252StringEncoding = 12 };
// Deprecated there, and the only one that both toolkits have.
enum : NSUInteger { NSCompositeSourceOver = 2 };
enum : NSModalResponse { NSModalResponseOK = 1 };

@class NSArray, NSBundle, NSDictionary, NSFont, NSImage, NSMenu, NSMenuItem, NSNotification, NSString, NSText;
@class NSError, NSTableColumn, NSTableView, NSView;

extern "C" {
extern const NSRect NSZeroRect;
NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height);
NSRange NSMakeRange(NSUInteger location, NSUInteger length);
CGFloat NSMinX(NSRect);
CGFloat NSMinY(NSRect);
void NSLogv(NSString* format, va_list);
SEL NSSelectorFromString(NSString* name);
}

@protocol NSObject
- (BOOL)isEqual:(id)object;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)respondsToSelector:(SEL)selector;
- (id)performSelector:(SEL)selector withObject:(id)object;
- (instancetype)retain;
- (oneway void)release;
- (instancetype)autorelease;
- (NSString*)description;
- (Class)class;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (Class)class;
- (instancetype)init;
- (void)dealloc;
- (id)copy;
@end
@interface NSObject (Categories)
- (void)awakeFromNib;
- (id)valueForKey:(NSString*)key;
@end
@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(void*)state objects:(id*)buffer count:(NSUInteger)length;
@end
@interface NSString : NSObject
+ (instancetype)stringWithCString:(const char*)text encoding:(NSStringEncoding)encoding;
+ (instancetype)stringWithUTF8String:(const char*)text;
+ (instancetype)stringWithFormat:(NSString*)format, ...;
+ (instancetype)stringWithCharacters:(const unichar*)characters length:(NSUInteger)length;
- (instancetype)initWithUTF8String:(const char*)text;
- (instancetype)initWithFormat:(NSString*)format arguments:(va_list)arguments;
- (instancetype)initWithBytes:(const void*)b length:(NSUInteger)count encoding:(NSStringEncoding)encoding;
- (NSUInteger)length;
- (unichar)characterAtIndex:(NSUInteger)index;
- (void)getCharacters:(unichar*)buffer range:(NSRange)range;
- (const char*)UTF8String;
- (BOOL)isEqualToString:(NSString*)string;
- (BOOL)hasPrefix:(NSString*)prefix;
- (NSString*)substringWithRange:(NSRange)range;
- (NSString*)lastPathComponent;
- (NSString*)stringByReplacingOccurrencesOfString:(NSString*)target withString:(NSString*)replacement;
- (NSArray*)componentsSeparatedByString:(NSString*)separator;
- (NSString*)stringByRemovingPercentEncoding;
@end
@interface NSArray : NSObject <NSFastEnumeration>
+ (instancetype)arrayWithObject:(id)object;
+ (instancetype)arrayWithObjects:(const id[])objects count:(NSUInteger)count;
- (NSUInteger)count;
- (id)objectAtIndex:(NSUInteger)index;
- (id)lastObject;
- (NSArray*)subarrayWithRange:(NSRange)range;
- (NSString*)componentsJoinedByString:(NSString*)separator;
- (BOOL)containsObject:(id)object;
@end
@interface NSMutableArray : NSArray
+ (instancetype)array;
- (void)addObject:(id)object;
- (void)insertObject:(id)object atIndex:(NSUInteger)index;
@end
@interface NSMutableSet : NSObject
+ (instancetype)set;
- (BOOL)containsObject:(id)object;
- (void)addObject:(id)object;
@end
@interface NSDictionary : NSObject <NSFastEnumeration>
- (id)objectForKey:(id)key;
@end
@interface NSMutableDictionary : NSDictionary
+ (instancetype)dictionary;
- (void)setObject:(id)object forKey:(id)key;
- (void)addEntriesFromDictionary:(NSDictionary*)dictionary;
@end
@interface NSNumber : NSObject
+ (NSNumber*)numberWithInt:(int)value;
- (int)intValue;
- (double)doubleValue;
@end
@interface NSIndexSet : NSObject
+ (instancetype)indexSet;
@end
@interface NSURL : NSObject
+ (NSURL*)fileURLWithPath:(NSString*)path;
- (NSString*)path;
- (NSString*)relativeString;
- (NSString*)lastPathComponent;
@end
@interface NSData : NSObject
- (const void*)bytes;
- (NSUInteger)length;
@end
@interface NSBundle : NSObject
+ (NSBundle*)bundleForClass:(Class)aClass;
- (NSString*)localizedStringForKey:(NSString*)key value:(NSString*)value table:(NSString*)table;
@end
@interface NSNib : NSObject
- (instancetype)initWithNibNamed:(NSString*)name bundle:(NSBundle*)bundle;
- (BOOL)instantiateWithOwner:(id)owner topLevelObjects:(NSArray**)objects;
@end
@interface NSEvent : NSObject
- (NSString*)charactersIgnoringModifiers;
@end
@interface NSFont : NSObject
+ (NSFont*)systemFontOfSize:(CGFloat)size;
+ (NSFont*)userFontOfSize:(CGFloat)size;
@end
@interface NSImage : NSObject
- (instancetype)initWithContentsOfFile:(NSString*)path;
- (void)drawInRect:(NSRect)rect
          fromRect:(NSRect)from
         operation:(NSUInteger)operation
          fraction:(CGFloat)fraction
    respectFlipped:(BOOL)flipped
             hints:(NSDictionary*)hints;
@end
@interface NSMenuItem : NSObject
- (instancetype)initWithTitle:(NSString*)title action:(SEL)action keyEquivalent:(NSString*)key;
- (NSString*)title;
- (void)setRepresentedObject:(id)object;
@property (retain) NSImage* onStateImage;
@property (retain) NSImage* mixedStateImage;
@property NSInteger state;
@end
@interface NSMenu : NSObject
- (void)addItem:(NSMenuItem*)item;
- (void)setAutoenablesItems:(BOOL)flag;
@end
@interface NSResponder : NSObject
- (void)keyDown:(NSEvent*)event;
- (void)complete:(id)sender;
- (void)insertNewline:(id)sender;
- (void)cancelOperation:(id)sender;
- (BOOL)performKeyEquivalent:(NSEvent*)event;
@end
@interface NSView : NSResponder
@property NSRect bounds;
@property NSRect frame;
- (NSArray*)subviews;
- (void)addSubview:(NSView*)view;
- (void)replaceSubview:(NSView*)old with:(NSView*)view;
@end
@interface NSWindow : NSResponder
- (NSView*)contentView;
- (void)setDelegate:(id)delegate;
- (void)setTitle:(NSString*)title;
- (BOOL)makeFirstResponder:(NSResponder*)responder;
- (void)center;
- (void)close;
@end
@interface NSOpenPanel : NSWindow
+ (NSOpenPanel*)openPanel;
- (void)setDirectoryURL:(NSURL*)folder;
- (NSModalResponse)runModal;
- (NSArray*)URLs;
@end
@interface NSApplication : NSResponder
- (NSModalResponse)runModalForWindow:(NSWindow*)window;
- (void)stopModal;
- (NSEvent*)currentEvent;
@end
extern "C" NSApplication* NSApp;

@interface NSCell : NSObject
- (void)setFont:(NSFont*)font;
@property (retain) NSImage* image;
@property (retain) NSString* stringValue;
- (void)drawInteriorWithFrame:(NSRect)frame inView:(NSView*)view;
@end
@interface NSControl : NSView
@property (getter=isEnabled) BOOL enabled;
@property int intValue;
@property (retain) NSString* stringValue;
- (void)setFont:(NSFont*)font;
- (void)textDidChange:(NSNotification*)notification;
@end
@interface NSButton : NSControl
@property (retain) NSString* title;
- (void)setKeyEquivalent:(NSString*)key;
@end
@interface NSPopUpButton : NSButton
- (NSMenu*)menu;
- (NSInteger)numberOfItems;
- (NSMenuItem*)itemAtIndex:(NSInteger)index;
- (NSString*)itemTitleAtIndex:(NSInteger)index;
- (NSInteger)indexOfSelectedItem;
- (NSMenuItem*)selectedItem;
- (void)selectItemAtIndex:(NSInteger)index;
- (void)addItemWithTitle:(NSString*)title;
- (void)removeItemAtIndex:(NSInteger)index;
- (void)removeAllItems;
@end
@interface NSTextField : NSControl
- (BOOL)isEditable;
- (void)setDelegate:(id)delegate;
- (BOOL)textShouldBeginEditing:(NSText*)text;
@end
@interface NSText : NSView
- (NSString*)string;
@property NSRange selectedRange;
@end
@interface NSTextView : NSText
@end
@interface NSBox : NSView
@property (retain) NSString* title;
@end
@interface NSTabViewItem : NSObject
- (void)setLabel:(NSString*)label;
@end
@interface NSTabView : NSView
- (NSInteger)numberOfTabViewItems;
- (NSTabViewItem*)tabViewItemAtIndex:(NSInteger)index;
- (void)selectTabViewItemAtIndex:(NSInteger)index;
@end
@interface NSTableColumn : NSObject
- (NSString*)identifier;
- (id)dataCell;
- (void)setDataCell:(NSCell*)cell;
- (id)headerCell;
- (void)setHeaderToolTip:(NSString*)text;
@end
@protocol NSTableViewDataSource;
@protocol NSTableViewDelegate;
@interface NSTableView : NSControl
- (id<NSTableViewDataSource>)dataSource;
- (id<NSTableViewDelegate>)delegate;
- (NSArray*)tableColumns;
- (NSTableColumn*)tableColumnWithIdentifier:(NSString*)identifier;
- (void)reloadData;
- (NSInteger)selectedRow;
- (void)deselectRow:(NSInteger)row;
- (void)deselectAll:(id)sender;
- (void)selectRowIndexes:(NSIndexSet*)rows byExtendingSelection:(BOOL)extend;
@end
@protocol NSTableViewDataSource <NSObject>
@optional
- (NSInteger)numberOfRowsInTableView:(NSTableView*)table;
- (id)tableView:(NSTableView*)table objectValueForTableColumn:(NSTableColumn*)column row:(NSInteger)row;
- (void)tableView:(NSTableView*)t setObjectValue:(id)o forTableColumn:(NSTableColumn*)c row:(NSInteger)r;
@end
@protocol NSTableViewDelegate <NSObject>
@optional
- (BOOL)selectionShouldChangeInTableView:(NSTableView*)table;
- (BOOL)tableView:(NSTableView*)table shouldSelectRow:(NSInteger)row;
- (void)tableView:(NSTableView*)t willDisplayCell:(id)o forTableColumn:(NSTableColumn*)c row:(NSInteger)r;
- (NSString*)tableView:(NSTableView*)table
        toolTipForCell:(NSCell*)cell
                  rect:(NSRect*)rect
           tableColumn:(NSTableColumn*)column
                   row:(NSInteger)row
         mouseLocation:(NSPoint)location;
- (void)tableViewSelectionDidChange:(NSNotification*)notification;
@end
@protocol NSTextFieldDelegate <NSObject>
@optional
- (BOOL)control:(NSControl*)control textView:(NSTextView*)view doCommandBySelector:(SEL)command;
@end
@protocol NSWindowDelegate <NSObject>
@optional
- (BOOL)windowShouldClose:(NSWindow*)window;
@end
