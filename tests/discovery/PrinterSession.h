#pragma once

#include <PrintingObjects.h>

/// Nil for null.
inline NSString* stringOf(const char* utf8)
{
    return utf8 != nullptr ? [NSString stringWithUTF8String:utf8] : nil;
}

/// A print session for a queue with the sample PPD and a device URI; null means without one.
class PrinterSession {
public:
    explicit PrinterSession(const char* uri)
    {
        NSString* ppd = stringOf(PDE_SOURCE_DIR "/printer/R4270.ppd");
        printer_ = [[PMPrinterObject alloc] initWithIdentifier:@"queue"
                                                     deviceURI:stringOf(uri)
                                                          file:ppd
                                                         error:nullptr];
        session_ = [[PMSessionObject alloc] initWithPrinter:printer_];
    }
    ~PrinterSession()
    {
        [session_ release];
        [printer_ release];
    }
    PrinterSession(const PrinterSession&) = delete;
    PrinterSession& operator=(const PrinterSession&) = delete;

    PMPrintSession handle() const { return [session_ handle]; }

private:
    PMPrinterObject* printer_;
    PMSessionObject* session_;
};
