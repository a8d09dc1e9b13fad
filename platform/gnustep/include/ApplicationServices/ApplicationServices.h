#pragma once

// The Printing core calls that the plug-in makes. How a dialog makes the objects behind the handles is in
// PrintingObjects.h, which only a host includes.

#include <CoreServices/CoreServices.h>

typedef struct OpaquePMPrintSettings* PMPrintSettings;
typedef struct OpaquePMPrintSession* PMPrintSession;
typedef struct OpaquePMPrinter* PMPrinter;

enum : OSStatus {
    kPMNoError = 0,
    kPMGeneralError = -30870,
    kPMKeyNotFound = -30857, ///< the settings or the session hold nothing under the key
    kPMInvalidParameter = -50,
    kPMNoDefaultPrinter = -30872,
};

extern "C" {

/// `value` is borrowed from the settings. Absent key: kPMKeyNotFound, `value` null.
OSStatus PMPrintSettingsGetValue(PMPrintSettings settings, CFStringRef key, CFTypeRef* value);

/// The settings keep `value`, of a dictionary a copy; null removes the key. Values are property-list objects.
/// `locked` makes no difference.
OSStatus PMPrintSettingsSetValue(PMPrintSettings settings, CFStringRef key, CFTypeRef value, Boolean locked);

/// `printer` is borrowed from the session.
OSStatus PMSessionGetCurrentPrinter(PMPrintSession session, PMPrinter* printer);

/// `data` is borrowed from the session.
OSStatus PMSessionGetDataFromSession(PMPrintSession session, CFStringRef key, CFTypeRef* data);

/// The queue's identifier, borrowed; null when it has none.
CFStringRef PMPrinterGetID(PMPrinter printer);

/// `uri` is the caller's to release. Fails, with null, when the printer has no device URI or one that is
/// not a URI.
OSStatus PMPrinterCopyDeviceURI(PMPrinter printer, CFURLRef* uri);

} // extern "C"
