#include "core/foundation/PropertyList.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/foundation/PropertyListReaders.h"
#include "core/foundation/TextCleanup.h"
#include "core/foundation/Utf8.h"

namespace tarnik {

namespace {

std::string_view withoutByteOrderMark(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return text.starts_with(mark) ? text.substr(mark.size()) : text;
}

bool holdsControls(std::string_view text) {
    return std::ranges::any_of(text, [](char c) {
        return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\r' && c != '\n';
    });
}

}  // namespace

std::optional<PropertyList> PropertyList::parse(std::string_view bytes) {
    using namespace PropertyListReaders;
    if (bytes.size() > maxBytes) return std::nullopt;
    if (bytes.starts_with(binaryMagic)) return readBinary(bytes);
    if (holdsControls(bytes) || !isUtf8(bytes)) return std::nullopt;
    const std::string_view text = trimWhitespace(withoutByteOrderMark(bytes));
    return text.starts_with('<') ? readXml(text) : readOpenStep(text);
}

PropertyList PropertyListReaders::dictionaryOf(PropertyList::Dictionary entries) {
    std::ranges::stable_sort(entries, {}, &PropertyList::Entry::key);
    return PropertyList(std::move(entries));
}

PropertyList::PropertyList(Value value) : value_(std::move(value)) {}

bool PropertyList::isDictionary() const {
    return std::holds_alternative<Dictionary>(value_);
}

std::optional<std::string> PropertyList::asString() const {
    const auto* text = std::get_if<std::string>(&value_);
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

std::optional<std::string> PropertyList::asLiteral() const {
    const auto* other = std::get_if<Other>(&value_);
    return other != nullptr && !other->literal.empty() ? std::optional(other->literal) : std::nullopt;
}

const PropertyList* PropertyList::entry(std::string_view key) const {
    const auto* entries = std::get_if<Dictionary>(&value_);
    if (entries == nullptr) return nullptr;
    const auto behind = std::ranges::upper_bound(*entries, key, {}, &Entry::key);
    if (behind == entries->begin() || std::prev(behind)->key != key) return nullptr;
    return &std::prev(behind)->value;
}

const PropertyList::Array& PropertyList::elements() const {
    static const Array none;
    const auto* array = std::get_if<Array>(&value_);
    return array != nullptr ? *array : none;
}

const PropertyList::Dictionary& PropertyList::entries() const {
    static const Dictionary none;
    const auto* entries = std::get_if<Dictionary>(&value_);
    return entries != nullptr ? *entries : none;
}

}  // namespace tarnik
