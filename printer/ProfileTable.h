#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

/// An object's name, all sub-identifiers. The vector's order is SNMP's.
using ObjectName = std::vector<oid>;

struct ObjectValue {
    u_char type = ASN_NULL;    ///< ASN_INTEGER, ASN_OCTET_STR, ...
    std::vector<u_char> bytes; ///< as net-snmp holds a value of that type
};

/// What the printer serves: every object, in the order of a walk.
using ObjectTable = std::map<ObjectName, ObjectValue>;

/// The printer's enterprise, below which all its objects are, and the base of the profile table.
const ObjectName& enterpriseName();
const ObjectName& profileTableName();

/// `text` is dotted numbers: with a leading "." a whole name, else relative to the profile table ("" is
/// the table itself). Throws std::invalid_argument for anything else.
ObjectName parseObjectName(const std::string& text);
std::string dotted(const ObjectName& name);

/// A value in the notation of snmpset: the type's letter and the text. Throws std::invalid_argument.
ObjectValue parseObjectValue(char type, const std::string& text);

struct TableFileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Reads a table file (docs/simulated-printer.md has the format). Throws TableFileError, whose text begins
/// with the file's name and, where it has one, the line's number.
ObjectTable readTableFile(const std::string& path);
