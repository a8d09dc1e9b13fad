#pragma once

#include "common/ControlItem.h"
#include "common/PDECommon.h"

/// Between a table's controls and the print settings. Choices are kept per queue, in a dictionary of the
/// model's dictionary ("R4270"), and each is copied to the top level, where the printing system finds it.
/// Settings that refuse an entry stay as they are, and nothing raises.
@interface PDECommon (Ticket)

/// The dictionary of the session's queue, made when absent, or nil: without a queue identifier, where the
/// settings hold something else in its place, and where they refuse a new one. The settings hold it too, or a
/// copy.
+ (NSMutableDictionary*)commonGetModelDictionary:(PMPrintSettings)settings session:(PMPrintSession)session;

/// The identifier of the session's printer, or nil.
+ (NSString*)commonGetPrintQueueName:(PMPrintSession)session;

/// The dictionary under `key`, or nil: for a nil or absent key and for anything that is no dictionary.
+ (NSDictionary*)commonCFDictionaryGetValueWithType:(id)dictionary key:(NSString*)key;

+ (BOOL)commonCFTypeIsValid:(id)object type:(CFTypeID)type;

/// Copies every entry with a string key to the top level of the settings, but for one that is named as the
/// model dictionary. Always 0.
+ (int)commonCFDictionaryMapToTicket:(PMPrintSettings)settings copyDict:(NSDictionary*)dictionary;

/// The control value for a stored one. A pop-up: its index, or -1 when it is no choice. A check box: 1 for
/// "True", "TRUE" and "true".
+ (int)commonGetTicketValueWithSInt32:(const PDEControlItem*)item option:(NSString*)option choice:(id)choice;

/// A number of the session's data as a handle, which is 0 on failure: the session's error, or -30889 for
/// data that is no number. Part of the interface, with no caller.
+ (int)commonGetTicket:(PMPrintSession)session kind:(NSString*)key ticket:(SInt32*)handle;

/// Controls to print settings, and back. 0 also when there is no queue dictionary: then nothing happens.
/// Settings that refuse the choices keep theirs, also at the top level, and still give them back.
+ (int)commonSyncTicketFromPane:(PMPrintSettings)settings
                        session:(PMPrintSession)session
                          table:(PDEControlItem*)table;
+ (int)commonSyncPaneFromTicket:(PMPrintSettings)settings
                        session:(PMPrintSession)session
                          table:(PDEControlItem*)table;

@end

/// A profile that is chosen in a profile pop-up, in a queue's dictionary of the print settings: under
/// "<key>CustomFilename" the coded path on the printer, under "<key>Custom" "True" when a profile is chosen.
/// Positions count the listed profiles of the row's list from 1. The list file is read on each call: the code
/// is with the lists, in profiles/.
@interface PDECommon (TicketProfiles)

/// Position of the stored profile; 0 when it is not listed, -1 for a row without profiles or no dictionary.
+ (SInt16)commonGetTicketAddedProfile:(const PDEControlItem*)item dict:(NSDictionary*)dictionary;

/// Stores the profile at a position; a position that no profile has stores an empty path. 0, or -1 as above.
+ (int)commonSetTicketAddedProfile:(const PDEControlItem*)item
                              dict:(NSMutableDictionary*)dictionary
                            select:(SInt16)position;

/// The stored flag as it is, borrowed; nil when absent and for a row without profiles.
+ (id)commonGetTicketAddedProfileFlag:(const PDEControlItem*)item dict:(NSDictionary*)dictionary;

/// Stores the flag on rows with profiles. Always 0.
+ (int)commonSetTicketAddedProfileFlag:(const PDEControlItem*)item
                                  dict:(NSMutableDictionary*)dictionary
                                  flag:(NSString*)flag;

@end
