#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>

class PropertyListDocument;

/// A value in a property list, borrowed from the document that owns it: valid as long as that document is,
/// also after the document was moved. A default-made node is no value; asking it gives "absent".
class PropertyListNode {
public:
    PropertyListNode() = default;
    explicit operator bool() const { return bool(element_); }

    bool isDictionary() const;
    /// Nothing when this is no integer, or one that 32 bits do not hold.
    std::optional<int32_t> integer() const;
    /// UTF-8; nothing when this is no string, or one that refers to a character that there is not.
    std::optional<std::string> string() const;

    /// The value of `key` in this dictionary; of a key that is there twice the last. No value when this is
    /// no dictionary or has no such key.
    PropertyListNode operator[](std::string_view key) const;

    /// Calls `visit(std::string_view key, PropertyListNode value)` for each entry, in the order of the text.
    template <typename Visit>
    void forEachEntry(Visit visit) const;

    /// Append to this dictionary. REQUIRES a dictionary that does not have the key yet. `value` is UTF-8
    /// without characters that XML cannot hold (see isPropertyListText).
    PropertyListNode addDictionary(const char* key);
    void addInteger(const char* key, int32_t value);
    void addString(const char* key, const std::string& value);

    /// An independent copy; the caller owns it.
    PropertyListDocument copy() const;

private:
    friend class PropertyListDocument;
    explicit PropertyListNode(pugi::xml_node element) : element_(element) {}
    pugi::xml_node append(const char* key, const char* type);

    pugi::xml_node element_;
};

/// A property list whose root is a dictionary. Owns its text and all its nodes; can be moved.
class PropertyListDocument {
public:
    /// An empty dictionary.
    PropertyListDocument();

    /// Reads an XML property list, nested no deeper than a list file is. Nothing when the text is anything
    /// else, is too long, is not UTF-8, or brings declarations of its own (entities); `reason`, when given,
    /// then says why in a few words. Time and memory are proportional to the length of the text.
    static std::optional<PropertyListDocument> parse(std::string text, std::string* reason = nullptr);

    PropertyListNode root() const { return PropertyListNode(contents_->root); }

    /// The document as XML property-list text.
    std::string text() const;

private:
    friend class PropertyListNode;
    struct Contents {
        std::string text; ///< the nodes point into it
        pugi::xml_document xml;
        pugi::xml_node root;
    };
    std::unique_ptr<Contents> contents_;
};

/// True for UTF-8 text of characters that XML can hold: no control character but tab, line feed and return.
bool isPropertyListText(std::string_view text);

template <typename Visit>
void PropertyListNode::forEachEntry(Visit visit) const
{
    if (!isDictionary())
        return;
    // Keys and values alternate: parsing saw to that.
    for (pugi::xml_node key = element_.first_child(); key;) {
        pugi::xml_node value = key.next_sibling();
        visit(std::string_view(key.child_value()), PropertyListNode(value));
        key = value.next_sibling();
    }
}
