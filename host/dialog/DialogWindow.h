#pragma once

#import <AppKit/AppKit.h>

/// Actions of the window's controls.
@protocol DialogActions
- (void)printerChosen:(id)sender;
- (void)presetChosen:(id)sender;
- (void)pageChosen:(id)sender;
- (void)cancel:(id)sender;
- (void)print:(id)sender;
@end

/// The print dialog's window: printer, presets, copies and pages, below them one page, and a line under it.
@interface DialogWindow : NSObject
{
    NSWindow* window_;
    NSView* header_;
    NSView* page_;
    NSSize pageSize_; ///< of the last page, so that the window keeps its size while there is none
    NSPopUpButton* printers_;
    NSPopUpButton* presets_;
    NSPopUpButton* pages_;
    NSTextField* copies_;
    NSStepper* stepper_;
    NSPopUpButton* rangeChoice_;
    NSTextField* range_;
    NSTextField* note_;
    NSButton* cancel_;
    NSButton* print_;
}
- (instancetype)initWithTarget:(id<DialogActions>)target title:(NSString*)title;
- (NSWindow*)window;
- (NSPopUpButton*)printers;
- (NSPopUpButton*)presets;
/// The switch between the pages.
- (NSPopUpButton*)pages;
/// Puts `view` in place of the page; the window fits itself around it. Nil leaves an empty page.
- (void)showPage:(NSView*)view;
- (BOOL)hasPage;
- (NSSize)pageSize;
/// Shows a text in place of a page.
- (void)showNotice:(NSString*)text;

/// The line under the page; "" for none.
- (void)setNote:(NSString*)text;
- (NSString*)note;

/// 1 to 9999; 0 when the user typed something else.
- (int)copies;
/// "" for all pages, else page numbers and ranges such as "1-3,5"; nil when the user typed something else.
- (NSString*)pageRanges;
/// Puts the caret on what is no such number or pages, its text selected. Nothing when both are right.
- (void)selectWrongField;
- (void)setCopies:(int)copies pageRanges:(NSString*)ranges;
@end
