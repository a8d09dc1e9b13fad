#include "ProfileTable.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>
#include <iomanip>
#include <limits>
#include <memory>
#include <sstream>

namespace {

constexpr oid kMaxSubIdentifier = std::numeric_limits<uint32_t>::max();
constexpr oid kOnlyInstance = 1; // the sub-identifier between column and row

ObjectValue integer(long value)
{
    ObjectValue result{ASN_INTEGER, std::vector<u_char>(sizeof value)};
    memcpy(result.bytes.data(), &value, sizeof value);
    return result;
}

ObjectValue string(const std::string& text)
{
    return {ASN_OCTET_STR, {text.begin(), text.end()}};
}

ObjectName cell(oid column, oid row)
{
    ObjectName name = profileTableName();
    name.insert(name.end(), {column, kOnlyInstance, row});
    return name;
}

long readInteger(std::istream& line, const char* what, long least = std::numeric_limits<int32_t>::min())
{
    std::string word;
    long value = 0;
    if (!(line >> word))
        throw std::invalid_argument(std::string("the ") + what + " is missing");
    auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size() || value < least ||
        value > std::numeric_limits<int32_t>::max())
        throw std::invalid_argument(std::string("the ") + what + " is not a number in range: " + word);
    return value;
}

std::string readText(std::istream& line, const char* what)
{
    std::string text;
    if ((line >> std::ws).peek() != '"')
        throw std::invalid_argument(std::string("the ") + what + " is missing or not in double quotes");
    line >> std::quoted(text);
    if (line.eof() && line.fail())
        throw std::invalid_argument(std::string("the ") + what + " has no closing quote");
    return text;
}

bool atEnd(std::istream& line)
{
    int next = (line >> std::ws).peek();
    return next == EOF || next == '#';
}

void readProfile(std::istream& line, ObjectTable& table)
{
    const long row = readInteger(line, "row", 0);
    auto numberUnlessAtEnd = [&](const char* what) { return atEnd(line) ? 0 : readInteger(line, what); };
    const ObjectValue cells[] = {integer(row),
                                 integer(readInteger(line, "location")),
                                 string(readText(line, "profile name")),
                                 string(readText(line, "file name")),
                                 integer(readInteger(line, "class")),
                                 integer(numberUnlessAtEnd("sixth column")),
                                 integer(numberUnlessAtEnd("seventh column"))};
    for (oid column = 1; column <= std::size(cells); ++column)
        if (!table.emplace(cell(column, static_cast<oid>(row)), cells[column - 1]).second)
            throw std::invalid_argument("row " + std::to_string(row) + " is there already");
}

void readObject(std::istream& line, ObjectTable& table)
{
    std::string name, type, value;
    if (!(line >> name >> type) || type.size() != 1)
        throw std::invalid_argument("an object has a name, the letter of a type and a value");
    ObjectName parsed = parseObjectName(name);
    const ObjectName& top = enterpriseName();
    if (parsed.size() <= top.size() || !std::equal(top.begin(), top.end(), parsed.begin()))
        throw std::invalid_argument("the name is not below " + dotted(top) + ": " + name);
    if ((line >> std::ws).peek() == '"')
        value = readText(line, "value");
    else if (!atEnd(line))
        line >> value;
    table[parsed] = parseObjectValue(type[0], value);
}

void readLine(const std::string& text, ObjectTable& table)
{
    std::istringstream line(text);
    if (atEnd(line))
        return;
    std::string word;
    line >> word;
    if (word == "profile")
        readProfile(line, table);
    else if (word == "object")
        readObject(line, table);
    else
        throw std::invalid_argument("a line begins with \"profile\" or \"object\", not with \"" + word +
                                    "\"");
    if (!atEnd(line))
        throw std::invalid_argument("there is more in the line than belongs there");
}

} // namespace

const ObjectName& enterpriseName()
{
    static const ObjectName name = {1, 3, 6, 1, 4, 1, 99999};
    return name;
}

const ObjectName& profileTableName()
{
    static const ObjectName name = {1, 3, 6, 1, 4, 1, 99999, 1, 1, 1, 1, 6, 13, 1, 1};
    return name;
}

ObjectName parseObjectName(const std::string& text)
{
    const bool whole = text.starts_with('.');
    ObjectName name = whole ? ObjectName() : profileTableName();
    const char* next = text.data() + (whole ? 1 : 0);
    const char* const end = text.data() + text.size();
    while (next < end) {
        oid part = 0;
        auto [stop, error] = std::from_chars(next, end, part);
        if (error != std::errc() || part > kMaxSubIdentifier ||
            (stop != end && (*stop != '.' || stop + 1 == end)))
            throw std::invalid_argument("not a dotted object name: " + text);
        name.push_back(part);
        next = stop == end ? end : stop + 1;
    }
    if (name.empty() || name.size() > MAX_OID_LEN)
        throw std::invalid_argument("an object name has 1 to 128 numbers: " + text);
    return name;
}

std::string dotted(const ObjectName& name)
{
    std::string text;
    for (oid part : name)
        text += '.' + std::to_string(part);
    return text;
}

ObjectValue parseObjectValue(char type, const std::string& text)
{
    // net-snmp reads the value as its own snmpset does, into a variable of a request that is never sent.
    std::unique_ptr<netsnmp_pdu, decltype(&snmp_free_pdu)> pdu(snmp_pdu_create(SNMP_MSG_SET), snmp_free_pdu);
    const ObjectName& name = profileTableName();
    if (pdu == nullptr || snmp_add_var(pdu.get(), name.data(), name.size(), type, text.c_str()) != 0)
        throw std::invalid_argument(std::string("not a value of the type ") + type + ": " + text);
    const netsnmp_variable_list* variable = pdu->variables;
    return {variable->type,
            {variable->val.string, variable->val.string + (variable->val.string ? variable->val_len : 0)}};
}

ObjectTable readTableFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw TableFileError(path + ": " + strerror(errno));
    ObjectTable table;
    std::string text;
    for (int number = 1; std::getline(file, text); ++number) {
        try {
            readLine(text, table);
        } catch (const std::invalid_argument& error) {
            throw TableFileError(path + ":" + std::to_string(number) + ": " + error.what());
        }
    }
    if (file.bad() || !file.eof())
        throw TableFileError(path + ": cannot be read to its end");
    return table;
}
