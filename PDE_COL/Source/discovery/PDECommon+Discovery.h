#pragma once

#include "common/PDECommon.h"
#include "discovery/ProtocolCode.h"

#include <ApplicationServices/ApplicationServices.h>

/// How the printer is reached, and the profiles that are on it. All failures are silent.
@interface PDECommon (Discovery)

/// A ProtocolCode. Schemes are compared with regard to case, at the very start of `uri`, which may be nil.
+ (SInt16)commoniGetProtocolByUrl:(NSString*)uri;

/// The ProtocolCode of the session's printer; kProtocolUnknown without session, printer or device URI.
+ (int)commoniGetProtocol:(PMPrintSession)session;

/// Has the helper read the profile table of the session's printer and merge it into the stored lists. Blocks
/// until that is done; for a printer that was found by its Bonjour name, up to one second more. Printers
/// that are not reached by LPD or Bonjour are left alone. Always 0.
+ (int)commonGetProfilesFromMIB:(PMPrintSession)session;

@end
