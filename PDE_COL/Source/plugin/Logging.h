#pragma once

#include "common/ControlItem.h"

#include <cstdio>

// For whoever debugs the plug-in inside a dialog. Nothing calls these: the plug-in logs nothing.

/// Writes a formatted text to the stream, in the system's encoding, with "?" for what it lacks. `format` is
/// UTF-8 and may use "%@".
void MyLog(FILE* stream, const char* format, ...);

/// To the system log, with the object in front: "BEGIN self(...) ...", "END self(...) ...", "LOG self(...):
/// ...".
void _PDEProlog(id object, NSString* format, ...);
void _PDEEpilog(id object, NSString* format, ...);
void _PDELog(id object, NSString* format, ...);

/// Walks the table to its end; a place for a breakpoint.
void _DEBUGControlTable(const PDEControlItem* table);
