#pragma once

#include "profiles/ProfileRecord.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

/// What the current walk has read of the printer's profile table: row r of the table is record r - 1.
/// `iNum` counts the values of column 1, one for each row of a sane table; a table that repeats rows can
/// bring it above 500. Process-wide: one walk at a time.
extern ProfileList PlistForSpool;

/// Stores one value of the table, or with `clear` 1 empties the spool and does nothing else (the other
/// arguments may then be null). `name` is the variable's own name. A value of another type than its column
/// has, a name that is too short and a row outside 1 to 500 are ignored; strings are cut at 32 bytes and at
/// their first zero byte.
void vSpoolPlist(const oid* name, int unused, const netsnmp_variable_list* variable, int clear);
