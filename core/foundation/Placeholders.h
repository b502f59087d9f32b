#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnik {

// The value of a placeholder in a text: {"version", "2.1"} replaces "{version}".
struct Placeholder {
    std::string_view name;
    std::string value;
    bool operator==(const Placeholder&) const = default;
};

using Placeholders = std::vector<Placeholder>;

// Returns the text with the values in place of the placeholders. A placeholder without a value stays. A value
// is not searched for placeholders.
std::string filled(std::string_view text, const Placeholders& values);

// Returns the values with which filled() makes `text` from `pattern`, or std::nullopt if it can't. A value
// ends where the text after its placeholder occurs first; the last value ends where the rest of the pattern
// occurs last. The names are views into `pattern`.
std::optional<Placeholders> valuesOf(std::string_view pattern, std::string_view text);

}  // namespace tarnik
