#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tarnik {

// A parsed property list, or a value inside one. Distinguishes dictionaries, arrays and strings. The XML
// format also gives truth values and integers.
//
// A value type. Pointers to entries stay valid as long as this object exists unchanged.
class PropertyList {
public:
    struct Entry;
    // Any other value, such as a number or data, or an invalid string of a binary list.
    struct Other {
        std::string literal = {};  // in XML: "true", "false", or an integer as written; otherwise empty
    };
    using Array = std::vector<PropertyList>;
    using Dictionary = std::vector<Entry>;  // ordered by key
    using Value = std::variant<Other, std::string, Array, Dictionary>;

    static constexpr std::size_t maxBytes = 65'536;
    // Upper bound for the number of dictionaries and arrays, and so for the depth. In a binary list, each
    // reference to a dictionary or array counts.
    static constexpr std::size_t maxContainers = 512;

    // Parses the XML, the binary and the old text format ("{ a = x; }"). Returns std::nullopt for anything
    // but one complete list within these limits, so that a damaged file is rejected. The later of two entries
    // with the same key wins. We don't use libplist, because it accepts damaged XML.
    static std::optional<PropertyList> parse(std::string_view bytes);

    explicit PropertyList(Value value);

    bool isDictionary() const;
    std::optional<std::string> asString() const;
    // Returns "true", "false" or an integer as written. Returns std::nullopt for any other value.
    std::optional<std::string> asLiteral() const;
    // Returns null if the entry doesn't exist or this isn't a dictionary.
    const PropertyList* entry(std::string_view key) const;
    // Returns the elements, or an empty array if this isn't an array.
    const Array& elements() const;
    // Returns the entries, also those with the same key, or an empty list if this isn't a dictionary.
    const Dictionary& entries() const;

private:
    Value value_;
};

struct PropertyList::Entry {
    std::string key;
    PropertyList value;
};

}  // namespace tarnik
