#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <string>
#include <utility>

#include "core/foundation/PropertyListReaders.h"
#include "core/foundation/Utf8.h"

namespace tarnik::PropertyListReaders {

namespace {

constexpr std::string_view blanks = " \t\r\n";

// Parses the subset of XML that property lists use: no definitions in the document type, only XML's five
// entities, no comments inside a string. Tags must be balanced. Only comments may follow the list.
class XmlReader {
public:
    explicit XmlReader(std::string_view text) : rest_(text) {}

    std::optional<PropertyList> document();

private:
    struct Tag {
        std::string_view name;
        bool closes = false;   // </name>
        bool isEmpty = false;  // <name/>
    };

    // Each consumes the named element. Each returns false if the element is incomplete or, except for the
    // prolog and comments, missing.
    bool skip(std::string_view token);
    bool skipBehind(std::string_view token);
    bool skipProlog();
    bool skipComments();  // also processing instructions and the declaration
    bool skipClosing(std::string_view name);

    std::optional<Tag> tag();
    std::optional<PropertyList> value(const Tag& tag);
    std::optional<PropertyList> array(const Tag& tag);
    std::optional<PropertyList> dictionary(const Tag& tag);
    std::optional<std::string> text(const Tag& tag);
    std::optional<char32_t> reference();

    std::string_view rest_;
    std::size_t containers_ = 0;
};

std::optional<PropertyList> XmlReader::document() {
    if (!skipProlog()) return std::nullopt;
    const auto root = tag();
    if (!root || root->name != "plist" || root->closes || root->isEmpty || !skipComments())
        return std::nullopt;
    const auto top = tag();
    auto list = top ? value(*top) : std::nullopt;
    if (!list || !skipComments() || !skipClosing("plist") || !skipComments() || !rest_.empty())
        return std::nullopt;
    return list;
}

bool XmlReader::skip(std::string_view token) {
    if (!rest_.starts_with(token)) return false;
    rest_.remove_prefix(token.size());
    return true;
}

bool XmlReader::skipBehind(std::string_view token) {
    const std::size_t at = rest_.find(token);
    if (at == rest_.npos) return false;
    rest_.remove_prefix(at + token.size());
    return true;
}

bool XmlReader::skipProlog() {
    if (!skipComments()) return false;
    if (!skip("<!DOCTYPE plist")) return true;
    const std::size_t end = rest_.find_first_of(">[");  // "[" starts definitions
    if (end == rest_.npos || rest_[end] == '[') return false;
    rest_.remove_prefix(end + 1);
    return skipComments();
}

bool XmlReader::skipComments() {
    while (true) {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(blanks), rest_.size()));
        if (skip("<!--")) {
            if (!skipBehind("-->")) return false;
        } else if (skip("<?")) {
            if (!skipBehind("?>")) return false;
        } else {
            return true;
        }
    }
}

bool XmlReader::skipClosing(std::string_view name) {
    const auto closing = tag();
    return closing && closing->closes && closing->name == name;
}

std::optional<XmlReader::Tag> XmlReader::tag() {
    if (!skip("<")) return std::nullopt;
    Tag tag{.closes = skip("/")};
    const auto isLetter = [](char c) { return c >= 'a' && c <= 'z'; };
    const auto length = std::ranges::find_if_not(rest_, isLetter) - rest_.begin();
    tag.name = rest_.substr(0, static_cast<std::size_t>(length));
    rest_.remove_prefix(tag.name.size());

    // Attributes are ignored. A quoted value may contain ">".
    char quote = '\0';
    std::size_t end = 0;
    for (; end < rest_.size() && (quote != '\0' || rest_[end] != '>'); ++end) {
        const char c = rest_[end];
        if (c == '<') return std::nullopt;
        if (c == quote)
            quote = '\0';
        else if (quote == '\0' && (c == '"' || c == '\''))
            quote = c;
    }
    if (end == rest_.size()) return std::nullopt;
    std::string_view attributes = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
    if (attributes.ends_with('/') && !tag.closes) {
        tag.isEmpty = true;
        attributes.remove_suffix(1);
    }
    if (!attributes.empty() && !blanks.contains(attributes.front())) return std::nullopt;
    if (tag.closes && attributes.find_first_not_of(blanks) != attributes.npos) return std::nullopt;
    return tag;
}

std::optional<PropertyList> XmlReader::value(const Tag& tag) {
    constexpr std::string_view others[] = {"integer", "real", "true", "false", "date", "data"};
    if (tag.closes) return std::nullopt;
    if (tag.name == "dict" || tag.name == "array") {
        if (++containers_ > PropertyList::maxContainers) return std::nullopt;
        return tag.name == "dict" ? dictionary(tag) : array(tag);
    }
    const bool isString = tag.name == "string";
    if (!isString && !(std::ranges::find(others, tag.name) != std::end(others))) return std::nullopt;
    auto content = text(tag);
    if (!content) return std::nullopt;
    if (isString) return PropertyList(*std::move(content));
    if (tag.name == "integer") return PropertyList(PropertyList::Other{*std::move(content)});
    const bool isTruth = tag.name == "true" || tag.name == "false";
    return PropertyList(PropertyList::Other{isTruth ? std::string(tag.name) : std::string()});
}

std::optional<PropertyList> XmlReader::array(const Tag& tag) {
    PropertyList::Array elements;
    while (!tag.isEmpty) {
        if (!skipComments()) return std::nullopt;
        const auto next = this->tag();
        if (!next) return std::nullopt;
        if (next->closes && next->name == "array") break;
        auto element = value(*next);
        if (!element) return std::nullopt;
        elements.push_back(*std::move(element));
    }
    return PropertyList(std::move(elements));
}

std::optional<PropertyList> XmlReader::dictionary(const Tag& tag) {
    PropertyList::Dictionary entries;
    while (!tag.isEmpty) {
        if (!skipComments()) return std::nullopt;
        const auto next = this->tag();
        if (next && next->closes && next->name == "dict") break;
        if (!next || next->closes || next->name != "key") return std::nullopt;
        auto key = text(*next);
        if (!key || !skipComments()) return std::nullopt;
        const auto behind = this->tag();
        auto entry = behind ? value(*behind) : std::nullopt;
        if (!entry) return std::nullopt;
        entries.push_back({.key = *std::move(key), .value = *std::move(entry)});
    }
    return dictionaryOf(std::move(entries));
}

// Reads the text up to the closing tag.
std::optional<std::string> XmlReader::text(const Tag& tag) {
    std::string text;
    while (!tag.isEmpty) {
        const std::size_t length = rest_.find_first_of("<&");
        if (length == rest_.npos) return std::nullopt;
        text += rest_.substr(0, length);
        rest_.remove_prefix(length);
        if (skip("<![CDATA[")) {
            const std::size_t end = rest_.find("]]>");
            text += rest_.substr(0, end);
            if (!skipBehind("]]>")) return std::nullopt;
        } else if (skip("&")) {
            const auto character = reference();
            if (!character) return std::nullopt;
            appendUtf8(text, *character);
        } else {
            if (!skipClosing(tag.name)) return std::nullopt;
            break;
        }
    }
    return text;
}

// Reads a character reference after its "&".
std::optional<char32_t> XmlReader::reference() {
    constexpr std::pair<std::string_view, char32_t> names[] = {
        {"lt;", U'<'}, {"gt;", U'>'}, {"amp;", U'&'}, {"quot;", U'"'}, {"apos;", U'\''}};
    for (const auto& [name, character] : names) {
        if (skip(name)) return character;
    }
    if (!skip("#")) return std::nullopt;
    const int base = skip("x") ? 16 : 10;
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number, base);
    if (error != std::errc()) return std::nullopt;
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    const bool isControl = number < 0x20 && !blanks.contains(static_cast<char>(number));
    const bool isCharacter = number < 0xD800 || (number >= 0xE000 && number <= 0x10FFFF);
    if (!skip(";") || isControl || !isCharacter) return std::nullopt;
    return number;
}

}  // namespace

std::optional<PropertyList> readXml(std::string_view text) {
    return XmlReader(text).document();
}

}  // namespace tarnik::PropertyListReaders
