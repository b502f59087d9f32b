#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tarnik {

// A property list that was read, or a value inside one. Of its kinds only dictionaries, arrays and texts are
// told apart.
//
// A value; pointers to its entries live as long as it does.
class PropertyList {
public:
    struct Entry;
    struct Other {};  // a number, a date, data, a binary list's text that isn't Unicode
    using Array = std::vector<PropertyList>;
    using Dictionary = std::vector<Entry>;  // ordered by key
    using Value = std::variant<Other, std::string, Array, Dictionary>;

    static constexpr std::size_t maxBytes = 65'536;
    // Dictionaries and arrays in all, those of a binary list counted as often as they are referred to. They
    // can't nest deeper than this.
    static constexpr std::size_t maxContainers = 512;

    // Reads the XML, the binary and the old text form ("{ a = x; }"). Returns std::nullopt for anything but
    // one whole list within these bounds: a damaged file must not be mistaken for a good one. Of two entries
    // with the same key the last one stays.
    static std::optional<PropertyList> parse(std::string_view bytes);

    explicit PropertyList(Value value);

    bool isDictionary() const;
    std::optional<std::string> asString() const;
    // Null when there is no such entry, or this isn't a dictionary.
    const PropertyList* entry(std::string_view key) const;
    // Empty when this isn't an array.
    const Array& elements() const;

private:
    Value value_;
};

struct PropertyList::Entry {
    std::string key;
    PropertyList value;
};

}  // namespace tarnik
