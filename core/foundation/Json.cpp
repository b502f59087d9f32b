#include "core/foundation/Json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include <boost/json/basic_parser_impl.hpp>

#include "core/foundation/Encoding.h"

namespace tarnik {

namespace {

using JsonError = boost::json::error_code;
using JsonText = boost::json::string_view;

void appendEscaped(std::string& json, char character) {
    switch (character) {
        case '\t': json += "\\t"; return;
        case '\n': json += "\\n"; return;
        case '\r': json += "\\r"; return;
        case '"': json += "\\\""; return;
        case '\\': json += "\\\\"; return;
        default: break;
    }
    if (static_cast<unsigned char>(character) >= 0x20) {
        json += character;
        return;
    }
    json += "\\u00" + encodeHex({&character, 1});
}

// Builds the value from the parser's events. boost::json::basic_parser prescribes the operations' names.
struct JsonBuilder {
    static constexpr auto max_object_size = static_cast<std::size_t>(-1);
    static constexpr auto max_array_size = max_object_size;
    static constexpr auto max_string_size = max_object_size;
    static constexpr auto max_key_size = max_object_size;

    // An array or object that isn't complete.
    struct Open {
        std::string key;  // of the next member
        Json::Array elements;
        Json::Object members;
        bool isObject = false;
    };
    std::optional<Json> document;
    std::vector<Open> open;
    std::string piece;  // of the current string or number

    bool on_document_begin(JsonError&) { return true; }
    bool on_document_end(JsonError&) { return true; }
    bool on_object_begin(JsonError&) {
        open.push_back({.isObject = true});
        return true;
    }
    bool on_object_end(std::size_t, JsonError& error) {
        Json::Object members = std::move(open.back().members);
        open.pop_back();
        std::ranges::sort(members, {}, &Json::Member::key);
        if (std::ranges::adjacent_find(members, {}, &Json::Member::key) != members.end())
            return refuse(error);
        return add(std::move(members));
    }
    bool on_array_begin(JsonError&) {
        open.emplace_back();
        return true;
    }
    bool on_array_end(std::size_t, JsonError&) {
        Json::Array elements = std::move(open.back().elements);
        open.pop_back();
        return add(std::move(elements));
    }
    bool on_key_part(JsonText text, std::size_t, JsonError&) { return append(text); }
    bool on_key(JsonText text, std::size_t, JsonError&) {
        open.back().key = whole(text);
        return true;
    }
    bool on_string_part(JsonText text, std::size_t, JsonError&) { return append(text); }
    bool on_string(JsonText text, std::size_t, JsonError&) { return add(whole(text)); }
    bool on_number_part(JsonText text, JsonError&) { return append(text); }
    bool on_int64(std::int64_t, JsonText text, JsonError&) { return add(Json::Number{whole(text)}); }
    bool on_uint64(std::uint64_t, JsonText text, JsonError&) { return add(Json::Number{whole(text)}); }
    bool on_double(double number, JsonText text, JsonError& error) {
        return std::isfinite(number) ? add(Json::Number{whole(text)}) : refuse(error);
    }
    bool on_bool(bool value, JsonError&) { return add(Json::Literal{value ? "true" : "false"}); }
    bool on_null(JsonError&) { return add(Json::Literal{"null"}); }
    bool on_comment_part(JsonText, JsonError&) { return true; }
    bool on_comment(JsonText, JsonError&) { return true; }

private:
    static bool refuse(JsonError& error) {
        error = boost::json::make_error_code(boost::json::error::syntax);
        return false;
    }
    bool append(JsonText text) {
        piece.append(text.data(), text.size());
        return true;
    }
    std::string whole(JsonText end) {
        append(end);
        return std::exchange(piece, {});
    }
    bool add(Json::Value value) {
        if (open.empty()) {
            document.emplace(std::move(value));
        } else if (open.back().isObject) {
            open.back().members.push_back({std::move(open.back().key), Json(std::move(value))});
        } else {
            open.back().elements.emplace_back(std::move(value));
        }
        return true;
    }
};

// Returns the value of a JSON number. Returns std::nullopt for a fraction, and for a number that the result
// can't hold. Works on the digits, so that rounding can't turn a fraction into an integer.
std::optional<std::int64_t> wholeNumber(std::string_view text) {
    constexpr int maxDigits = 19;
    std::string digits(text.starts_with('-') ? "-" : "");
    const std::size_t sign = digits.size();
    const std::size_t exponentAt = std::min(text.find_first_of("eE"), text.size());
    int zeros = 0;  // the exponent; 0 if absent
    if (exponentAt < text.size()) {
        std::string_view exponent = text.substr(exponentAt + 1);
        if (exponent.starts_with('+')) exponent.remove_prefix(1);
        const auto read = std::from_chars(exponent.data(), exponent.data() + exponent.size(), zeros);
        if (read.ec != std::errc()) return std::nullopt;
    }
    const std::string_view mantissa = text.substr(sign, exponentAt - sign);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    digits += mantissa.substr(0, point);
    if (point < mantissa.size()) digits += mantissa.substr(point + 1);
    std::int64_t places = zeros - static_cast<std::int64_t>(digits.size() - sign - point);

    for (; places < 0 && digits.size() > sign + 1 && digits.back() == '0'; ++places) digits.pop_back();
    digits.erase(sign, std::min(digits.find_first_not_of('0', sign), digits.size() - 1) - sign);
    if (digits.ends_with('0') && digits.size() == sign + 1) return 0;
    if (places < 0 || places > maxDigits) return std::nullopt;
    digits.append(static_cast<std::size_t>(places), '0');
    std::int64_t number = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return read.ec == std::errc() ? std::optional(number) : std::nullopt;
}

}  // namespace

std::string quotedJson(std::string_view text) {
    std::string json;
    json.reserve(text.size() + 2);
    json += '"';
    for (const char character : text) appendEscaped(json, character);
    json += '"';
    return json;
}

std::optional<Json> Json::parse(std::string_view bytes, std::size_t maxBytes) {
    if (bytes.size() > maxBytes) return std::nullopt;
    boost::json::parse_options options;
    options.max_depth = maxDepth;
    boost::json::basic_parser<JsonBuilder> parser(options);
    JsonError error;
    const std::size_t taken = parser.write_some(false, bytes.data(), bytes.size(), error);
    if (error.failed() || taken < bytes.size()) return std::nullopt;
    return std::move(parser.handler().document);
}

Json::Json(Value value) : value_(std::move(value)) {}

bool Json::isObject() const {
    return std::holds_alternative<Object>(value_);
}

bool Json::isNumber() const {
    return std::holds_alternative<Number>(value_);
}

std::optional<std::string> Json::asString() const {
    const auto* text = std::get_if<std::string>(&value_);
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

std::optional<std::int64_t> Json::asInteger() const {
    const auto* number = std::get_if<Number>(&value_);
    return number != nullptr ? wholeNumber(number->text) : std::nullopt;
}

std::optional<bool> Json::asBoolean() const {
    const auto* literal = std::get_if<Literal>(&value_);
    if (literal == nullptr || literal->text == "null") return std::nullopt;
    return literal->text == "true";
}

const Json* Json::member(std::string_view key) const {
    const auto found = std::ranges::lower_bound(members(), key, {}, &Member::key);
    return found != members().end() && found->key == key ? &found->value : nullptr;
}

const Json::Object& Json::members() const {
    static const Object none;
    const auto* object = std::get_if<Object>(&value_);
    return object != nullptr ? *object : none;
}

const Json::Array& Json::elements() const {
    static const Array none;
    const auto* array = std::get_if<Array>(&value_);
    return array != nullptr ? *array : none;
}

std::string Json::text() const {
    if (auto string = asString()) return *std::move(string);
    std::string json;
    appendJson(json);
    return json;
}

void Json::appendJson(std::string& json) const {
    if (const auto* literal = std::get_if<Literal>(&value_)) json += literal->text;
    if (const auto* number = std::get_if<Number>(&value_)) json += number->text;
    if (const auto* string = std::get_if<std::string>(&value_)) json += quotedJson(*string);
    if (const auto* array = std::get_if<Array>(&value_)) {
        json += '[';
        for (const Json& element : *array) {
            if (&element != array->data()) json += ',';
            element.appendJson(json);
        }
        json += ']';
    }
    if (const auto* object = std::get_if<Object>(&value_)) {
        json += '{';
        for (const Member& member : *object) {
            if (&member != object->data()) json += ',';
            json += quotedJson(member.key) + ":";
            member.value.appendJson(json);
        }
        json += '}';
    }
}

}  // namespace tarnik
