#pragma once

// The objects behind the Printing core's handles, which a print dialog makes. Plug-ins do not include this.
// A handle is the object itself: it is valid as long as the object is retained.

#include <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>
#include <cups/ppd.h>

/// Print settings: property-list values under string keys.
@interface PMSettingsObject : NSObject
{
    NSMutableDictionary* values_;
}
/// The values of an XML property-list file, its containers immutable as a restored preset's are. Nil, and
/// a reason in `error`, when the file cannot be read, is over 4 MiB, is nested too deep or does not hold a
/// dictionary.
+ (NSDictionary*)valuesOfFile:(NSString*)path error:(NSString**)error;
/// NO when the file cannot be written; the old file is then still there.
- (BOOL)writeToFile:(NSString*)path;
/// The settings' own.
- (NSMutableDictionary*)values;
/// Puts `values` in place of all entries. Nested containers are taken as they are.
- (void)replaceValues:(NSDictionary*)values;
- (PMPrintSettings)handle;
@end

/// A printer: identifier, device URI and PPD, of which any may be missing.
@interface PMPrinterObject : NSObject
{
    NSString* identifier_;
    NSString* deviceURI_;
    ppd_file_t* ppdFile_;
}
/// Opens the PPD, marks its defaults and puts its texts into the user's language. Nil, and a reason in
/// `error`, when it cannot be read.
- (instancetype)initWithIdentifier:(NSString*)identifier
                         deviceURI:(NSString*)uri
                              file:(NSString*)ppdPath
                             error:(NSString**)error;
/// Identifier, device URI and PPD of a queue of the CUPS server. Nil, and a reason in `error`, when the
/// server does not answer within a second, has no such queue, or the queue has no PPD.
- (instancetype)initWithQueue:(NSString*)queue error:(NSString**)error;
- (NSString*)identifier;
- (NSString*)deviceURI;
/// The printer's own; never null.
- (ppd_file_t*)ppdFile;
- (PMPrinter)handle;
@end

/// A print session for one printer.
@interface PMSessionObject : NSObject
{
    PMPrinterObject* printer_;
    NSMutableDictionary* data_;
}
/// `printer` is retained; nil makes a session without a printer.
- (instancetype)initWithPrinter:(PMPrinterObject*)printer;
/// What PMSessionGetDataFromSession gives for `key`; nil removes it.
- (void)setData:(id)value forKey:(NSString*)key;
- (PMPrinterObject*)printer;
- (PMPrintSession)handle;
@end
