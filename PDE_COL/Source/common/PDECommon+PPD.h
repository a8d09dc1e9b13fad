#pragma once

#include "common/ControlItem.h"
#include "common/PDECommon.h"

#include <cups/ppd.h>

/// Reading the queue's PPD, which is never opened or closed here and may be null. Option and choice keywords
/// are compared exactly.
@interface PDECommon (PPD)

/// A new list of the option's choices into `array`, which the caller releases. -30888 when the PPD lacks the
/// option (`array` is not touched), -30870 when no list can be made.
+ (int)commonGetPPDArrayForUIOption:(ppd_file_t*)ppd key:(const char*)key array:(CFMutableArrayRef*)array;

/// Adds one entry per choice to the list and 1 to `count` for each. Always 0.
+ (int)commonGetUIListFromPPD:(ppd_file_t*)ppd
                          key:(const char*)key
                        array:(CFMutableArrayRef*)array
                        count:(SInt16*)count;

/// Whether marking the choice would conflict with the PPD's present marks, which are as before afterwards.
/// Marks change meanwhile: nobody else may use the PPD during the call.
+ (BOOL)commonIsPPDChoiceConflicted:(ppd_file_t*)ppd option:(const char*)option choice:(const char*)choice;

/// Index of the entry with this option and choice keyword, or -1.
+ (int)commonFindPPDKeyPairsMatch:(NSArray*)choices option:(NSString*)option choice:(NSString*)choice;

/// Fills the row's pop-up with the option's choices: item i is choice i, whatever their texts, which are in
/// the PPD's language.
+ (void)commonReBuildMenuFromPPD:(ppd_file_t*)ppd table:(const PDEControlItem*)item;

/// The encoding of the PPD's texts, by its `lang_encoding`. Unknown, absent or no PPD: Mac OS Roman.
+ (NSStringEncoding)commonGetEncodingFromPPD:(ppd_file_t*)ppd;
+ (CFStringEncoding)commonGetCFStringEncodingFromPPD:(ppd_file_t*)ppd;

/// The control value of the PPD's default choice; 0 when the row has no choices, -1 for a pop-up's default
/// that is not among them.
+ (int)commonGetDefualtValueFromPPDWithSInt32:(const PDEControlItem*)item;

/// Index into the row's choices for the control's present state. A check box gives -1 when the PPD lacks the
/// choice; a pop-up can give more than there are choices, when a profile is selected.
+ (int)commonGetControlValueFromPPDWithSInt32:(const PDEControlItem*)item;

/// The text for the control's present state; nil when there is none.
+ (NSString*)commonGetControlValueFromPPDWithNSString:(const PDEControlItem*)item;

/// The name of the model dictionary in the print settings.
+ (NSString*)commonGetPPDProductName:(PMPrintSettings)settings;

/// A PPD text as a string, never nil: bytes that the encoding does not know are taken as Mac OS Roman.
+ (NSString*)commonGetTextFromPPDBytes:(const char*)bytes encoding:(NSStringEncoding)encoding;

@end
