#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tarnik {

// The text as a JSON string, in double quotes. Only the quote, the backslash and the characters below 32 are
// escaped: "/", delete and everything beyond ASCII stand as they are. `text` should be valid UTF-8.
std::string quotedJson(std::string_view text);

// A JSON document that was read, or a value inside one.
//
// A value; pointers to its members live as long as it does.
class Json {
public:
    struct Member;

    struct Literal {
        std::string text;  // true, false or null
    };
    struct Number {
        std::string text;  // as it stood in the document
    };
    using Array = std::vector<Json>;
    using Object = std::vector<Member>;  // ordered by key
    using Value = std::variant<Literal, Number, std::string, Array, Object>;

    static constexpr std::size_t maxDepth = 32;

    // None for what isn't exactly one JSON value in UTF-8, white space around it aside: nothing before it (a
    // byte-order mark neither) and nothing behind. None as well for more than `maxBytes`, for values nested
    // deeper than maxDepth, for a number that no double comes near, and for an object that names a member
    // twice, since two readers of it might see two things.
    static std::optional<Json> parse(std::string_view bytes, std::size_t maxBytes);

    explicit Json(Value value);

    bool isObject() const;
    bool isNumber() const;
    std::optional<std::string> asString() const;
    // A number that is whole, however it is written: 1, 1.0 and 10e-1 are 1.
    std::optional<std::int64_t> asInteger() const;

    // Null when there is no such member, or this isn't an object.
    const Json* member(std::string_view key) const;
    // Ordered by key; empty when this isn't an object.
    const Object& members() const;

    // The value in plain print: a string as it is, everything else as JSON without white space.
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
