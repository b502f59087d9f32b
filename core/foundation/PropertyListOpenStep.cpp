#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <utility>

#include "core/foundation/PropertyListReaders.h"
#include "core/foundation/Utf8.h"

namespace tarnik::PropertyListReaders {

namespace {

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// Returns true for a character that a string without quotes can contain.
bool isPlain(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
           std::string_view("_$/:.-").contains(c);
}

// Parses the text format that is older than the XML format: { key = (one, "two words", <0fa3>); }
class OpenStepReader {
public:
    explicit OpenStepReader(std::string_view text) : rest_(text) {}

    std::optional<PropertyList> document();

private:
    // Each consumes the named element. Each returns false if the element is incomplete or, except for
    // comments, missing.
    bool skip(char c);
    bool skipComments();
    bool skipData();

    std::optional<PropertyList> value();
    std::optional<PropertyList> array();
    std::optional<PropertyList> dictionary();
    std::optional<std::string> text();
    std::optional<std::string> quoted(char quote);
    std::optional<char32_t> escape();
    std::optional<char32_t> number(std::size_t maxDigits, int base);

    std::string_view rest_;
    std::size_t containers_ = 0;
};

// Rejects a lone string and dictionary entries without braces, because almost any text is one of these.
std::optional<PropertyList> OpenStepReader::document() {
    if (!skipComments() || !(rest_.starts_with('{') || rest_.starts_with('('))) return std::nullopt;
    auto list = value();
    if (!list || !skipComments() || !rest_.empty()) return std::nullopt;
    return list;
}

bool OpenStepReader::skip(char c) {
    if (!rest_.starts_with(c)) return false;
    rest_.remove_prefix(1);
    return true;
}

bool OpenStepReader::skipComments() {
    while (true) {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size()));
        const bool isLine = rest_.starts_with("//");
        if (!isLine && !rest_.starts_with("/*")) return true;
        const std::size_t end = isLine ? rest_.find_first_of("\r\n") : rest_.find("*/", 2);
        if (!isLine && end == rest_.npos) return false;
        rest_.remove_prefix(std::min(end + (isLine ? 0 : 2), rest_.size()));
    }
}

// Consumes hexadecimal digits, two for each byte, and the closing bracket. White space may separate the
// digits.
bool OpenStepReader::skipData() {
    const std::size_t end = rest_.find('>');
    if (end == rest_.npos) return false;
    const std::string_view digits = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
    const auto isBlank = [](char c) { return std::string_view(" \t\r\n").contains(c); };
    return std::ranges::all_of(digits, [&](char c) { return isHexDigit(c) || isBlank(c); }) &&
           std::ranges::count_if(digits, isHexDigit) % 2 == 0;
}

std::optional<PropertyList> OpenStepReader::value() {
    if (!skipComments()) return std::nullopt;
    if (skip('<')) return skipData() ? std::optional(PropertyList(PropertyList::Other{})) : std::nullopt;
    if (rest_.starts_with('{') || rest_.starts_with('(')) {
        if (++containers_ > PropertyList::maxContainers) return std::nullopt;
        return skip('{') ? dictionary() : array();
    }
    auto content = text();
    if (!content) return std::nullopt;
    return PropertyList(*std::move(content));
}

std::optional<PropertyList> OpenStepReader::array() {
    skip('(');
    PropertyList::Array elements;
    while (true) {
        if (!skipComments()) return std::nullopt;
        if (skip(')')) return PropertyList(std::move(elements));
        auto element = value();
        if (!element || !skipComments()) return std::nullopt;
        elements.push_back(*std::move(element));
        if (!skip(',') && !rest_.starts_with(')')) return std::nullopt;
    }
}

std::optional<PropertyList> OpenStepReader::dictionary() {
    PropertyList::Dictionary entries;
    while (true) {
        if (!skipComments()) return std::nullopt;
        if (skip('}')) return dictionaryOf(std::move(entries));
        auto key = text();
        if (!key || !skipComments() || !skip('=')) return std::nullopt;
        auto entry = value();
        if (!entry || !skipComments() || !skip(';')) return std::nullopt;
        entries.push_back({.key = *std::move(key), .value = *std::move(entry)});
    }
}

std::optional<std::string> OpenStepReader::text() {
    for (const char quote : {'"', '\''}) {
        if (skip(quote)) return quoted(quote);
    }
    const auto length = std::ranges::find_if_not(rest_, isPlain) - rest_.begin();
    if (length == 0) return std::nullopt;
    const std::string_view word = rest_.substr(0, static_cast<std::size_t>(length));
    rest_.remove_prefix(word.size());
    return std::string(word);
}

std::optional<std::string> OpenStepReader::quoted(char quote) {
    const char ends[] = {quote, '\\'};
    std::string text;
    while (true) {
        const std::size_t length = rest_.find_first_of(std::string_view(ends, sizeof ends));
        if (length == rest_.npos) return std::nullopt;
        text += rest_.substr(0, length);
        rest_.remove_prefix(length);
        if (skip(quote)) return text;
        const auto character = escape();
        if (!character) return std::nullopt;
        appendUtf8(text, *character);
    }
}

// Reads an escape sequence such as \n, \" or \U00e9. Rejects octal numbers beyond ASCII, because they are
// codes of an old character set.
std::optional<char32_t> OpenStepReader::escape() {
    constexpr std::pair<char, char32_t> names[] = {{'a', U'\a'}, {'b', U'\b'}, {'f', U'\f'}, {'n', U'\n'},
                                                   {'r', U'\r'}, {'t', U'\t'}, {'v', U'\v'}};
    constexpr std::size_t octalDigits = 3;
    constexpr std::size_t hexDigits = 4;
    skip('\\');
    for (const auto& [name, character] : names) {
        if (skip(name)) return character;
    }
    if (skip('U')) {
        const auto unit = number(hexDigits, 16);
        return unit && (*unit < 0xD800 || *unit > 0xDFFF) ? unit : std::nullopt;
    }
    if (const auto octal = number(octalDigits, 8)) return *octal < 0x80 ? octal : std::nullopt;
    const std::string_view itself = "\"'\\\n";
    if (rest_.empty() || !itself.contains(rest_.front())) return std::nullopt;
    const char character = rest_.front();
    rest_.remove_prefix(1);
    return static_cast<char32_t>(character);
}

std::optional<char32_t> OpenStepReader::number(std::size_t maxDigits, int base) {
    std::uint32_t value = 0;
    const std::string_view digits = rest_.substr(0, maxDigits);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    if (error != std::errc()) return std::nullopt;
    rest_.remove_prefix(static_cast<std::size_t>(end - digits.data()));
    return value;
}

}  // namespace

std::optional<PropertyList> readOpenStep(std::string_view text) {
    return OpenStepReader(text).document();
}

}  // namespace tarnik::PropertyListReaders
