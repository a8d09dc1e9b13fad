#include "profiles/PropertyList.h"

#include "profiles/HelperProtocol.h"
#include "profiles/Utf8.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <utf8.h>

namespace {

// A text that stands first in its element is kept in the element itself: half the nodes, and faster.
constexpr unsigned kParseOptions = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol |
                                   pugi::parse_doctype | pugi::parse_ws_pcdata_single |
                                   pugi::parse_embed_pcdata;

/// The plist element, the root, a class, a field, a value.
constexpr int kDeepest = 5;

/// A little more than the text of three full lists, which need not be moved while it grows then.
constexpr size_t kFullListSize = 512 << 10;

constexpr std::string_view kBlanks = " \t\r\n";

bool is(pugi::xml_node element, const char* type)
{
    return strcmp(element.name(), type) == 0;
}

bool isBlank(std::string_view text)
{
    return text.find_first_not_of(kBlanks) == std::string_view::npos;
}

bool isLeaf(pugi::xml_node element)
{
    return std::none_of(element.begin(), element.end(),
                        [](pugi::xml_node child) { return child.type() == pugi::node_element; });
}

bool isValue(pugi::xml_node element, int depth);

/// The children of a collection: elements only, in a dictionary a key before each value.
bool holdsValues(pugi::xml_node collection, int depth)
{
    if (!isBlank(collection.value()))
        return false;
    bool keyed = is(collection, "dict");
    bool keyExpected = keyed;
    for (pugi::xml_node child : collection) {
        if (keyExpected ? !is(child, "key") || !isLeaf(child) : !isValue(child, depth + 1))
            return false;
        keyExpected = keyed && !keyExpected;
    }
    return keyExpected == keyed;
}

bool isValue(pugi::xml_node element, int depth)
{
    if (depth > kDeepest || element.type() != pugi::node_element)
        return false;
    if (is(element, "dict") || is(element, "array"))
        return holdsValues(element, depth);
    for (const char* type : {"string", "integer", "real", "true", "false", "date", "data"}) {
        if (is(element, type))
            return isLeaf(element);
    }
    return false;
}

/// Says what is wrong with a parsed document, or null; `root` becomes its root dictionary.
const char* structureFault(const pugi::xml_document& xml, pugi::xml_node& root)
{
    pugi::xml_node plist;
    for (pugi::xml_node node : xml) {
        // Only an internal subset, in square brackets, declares anything; nothing is ever fetched.
        if (node.type() == pugi::node_doctype && strchr(node.value(), '[') != nullptr)
            return "its document type brings declarations";
        if (node.type() != pugi::node_element)
            continue;
        if (plist || !is(node, "plist"))
            return "not a property list";
        plist = node;
    }
    root = plist.first_child();
    if (!isBlank(plist.value()) || !is(root, "dict") || root.next_sibling())
        return "its root is no dictionary";
    return isValue(root, 2) ? nullptr : "not built as a property list is, or nested too deep";
}

struct TextWriter : pugi::xml_writer {
    std::string text;
    void write(const void* data, size_t size) override { text.append(static_cast<const char*>(data), size); }
};

} // namespace

bool PropertyListNode::isDictionary() const
{
    return is(element_, "dict");
}

std::optional<int32_t> PropertyListNode::integer() const
{
    if (!is(element_, "integer"))
        return std::nullopt;
    std::string_view text = element_.child_value();
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    text.remove_suffix(text.size() - std::min(text.find_last_not_of(kBlanks) + 1, text.size()));
    int32_t value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::optional<std::string> PropertyListNode::string() const
{
    if (!is(element_, "string"))
        return std::nullopt;
    std::string text = element_.value();
    for (pugi::xml_node part : element_)
        text += part.value();
    // Only a reference can bring what is no UTF-8: half of a surrogate pair.
    return isUtf8(text) ? std::optional(text) : std::nullopt;
}

PropertyListNode PropertyListNode::operator[](std::string_view key) const
{
    PropertyListNode found;
    forEachEntry([&](std::string_view name, PropertyListNode value) {
        if (name == key)
            found = value;
    });
    return found;
}

pugi::xml_node PropertyListNode::append(const char* key, const char* type)
{
    element_.append_child("key").text().set(key);
    return element_.append_child(type);
}

PropertyListNode PropertyListNode::addDictionary(const char* key)
{
    return PropertyListNode(append(key, "dict"));
}

void PropertyListNode::addInteger(const char* key, int32_t value)
{
    append(key, "integer").text().set(value);
}

void PropertyListNode::addString(const char* key, const std::string& value)
{
    append(key, "string").text().set(value.c_str());
}

PropertyListDocument PropertyListNode::copy() const
{
    PropertyListDocument document;
    for (pugi::xml_node child : element_)
        document.contents_->root.append_copy(child);
    return document;
}

PropertyListDocument::PropertyListDocument() : contents_(std::make_unique<Contents>())
{
    pugi::xml_node declaration = contents_->xml.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    contents_->xml.append_child(pugi::node_doctype)
        .set_value("plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                   "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\"");
    pugi::xml_node plist = contents_->xml.append_child("plist");
    plist.append_attribute("version") = "1.0";
    contents_->root = plist.append_child("dict");
}

std::optional<PropertyListDocument> PropertyListDocument::parse(std::string text, std::string* reason)
{
    const char* fault = nullptr;
    PropertyListDocument document;
    Contents& contents = *document.contents_;
    if (text.size() > kLongestListFile)
        fault = "longer than 4 MiB";
    else if (text.find('\0') != std::string::npos || !isUtf8(text))
        fault = "not UTF-8 text";
    if (fault == nullptr) {
        contents.text = std::move(text);
        pugi::xml_parse_result result = contents.xml.load_buffer_inplace(
            contents.text.data(), contents.text.size(), kParseOptions, pugi::encoding_utf8);
        fault = result ? structureFault(contents.xml, contents.root) : result.description();
    }
    if (fault == nullptr)
        return document;
    if (reason != nullptr)
        *reason = fault;
    return std::nullopt;
}

std::string PropertyListDocument::text() const
{
    TextWriter writer;
    writer.text.reserve(kFullListSize);
    // A line for each key and value, but no indentation: a sixth of the text goes to the helper in vain.
    contents_->xml.save(writer, "", pugi::format_default, pugi::encoding_utf8);
    return std::move(writer.text);
}

bool isPropertyListText(std::string_view text)
{
    if (!isUtf8(text))
        return false;
    for (auto at = text.begin(); at != text.end();) {
        uint32_t c = utf8::unchecked::next(at);
        if ((c < 0x20 && c != '\t' && c != '\n' && c != '\r') || c == 0xFFFE || c == 0xFFFF)
            return false;
    }
    return true;
}
