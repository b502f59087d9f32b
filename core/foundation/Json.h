#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tarnik {

// Returns the text as a JSON string in double quotes. Escapes only the quote, the backslash and the
// characters below 32. `text` should be valid UTF-8.
std::string quotedJson(std::string_view text);

// A parsed JSON document, or a value inside one.
//
// A value type. Pointers to members stay valid as long as this object exists unchanged.
class Json {
public:
    struct Member;

    struct Literal {
        std::string text;  // true, false or null
    };
    struct Number {
        std::string text;  // as written in the document
    };
    using Array = std::vector<Json>;
    using Object = std::vector<Member>;  // ordered by key
    using Value = std::variant<Literal, Number, std::string, Array, Object>;

    static constexpr std::size_t maxDepth = 32;

    // Parses exactly one JSON value in UTF-8 with optional white space around the value. Returns std::nullopt
    // for anything else, such as a byte-order mark, for more than `maxBytes`, for values nested deeper than
    // maxDepth, for a number outside the range of double, and for an object with a duplicate member. Two
    // parsers might return different values for a duplicate member.
    static std::optional<Json> parse(std::string_view bytes, std::size_t maxBytes);

    explicit Json(Value value);

    bool isObject() const;
    bool isNumber() const;
    std::optional<std::string> asString() const;
    // Returns a 64-bit integer in any notation: 1, 1.0 and 10e-1 are 1. Returns std::nullopt for any other
    // value.
    std::optional<std::int64_t> asInteger() const;

    // Returns std::nullopt for any value but true and false.
    std::optional<bool> asBoolean() const;

    // Returns null if the member doesn't exist or this isn't an object.
    const Json* member(std::string_view key) const;
    // Returns the members ordered by key, or an empty list if this isn't an object.
    const Object& members() const;
    // Returns the elements, or an empty list if this isn't an array.
    const Array& elements() const;

    // Returns the contents of a string. Returns any other value as JSON without white space.
    std::string text() const;

private:
    void appendJson(std::string& json) const;

    Value value_;
};

struct Json::Member {
    std::string key;
    Json value;
};

}  // namespace tarnik
