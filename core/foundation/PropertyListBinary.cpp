#include <cstdint>
#include <string>
#include <utility>

#include "core/foundation/PropertyListReaders.h"
#include "core/foundation/Utf8.h"

namespace tarnik::PropertyListReaders {

namespace {

// Follows the references of a binary list from the root. A small file can refer to one object many times, so
// the limits apply to the expanded list. The limit of containers also bounds the depth.
class BinaryReader {
public:
    explicit BinaryReader(std::string_view bytes) : bytes_(bytes) {}

    std::optional<PropertyList> read();

private:
    static constexpr std::size_t trailerSize = 32;
    static constexpr std::size_t maxUnfoldedBytes = 16 * PropertyList::maxBytes;

    enum class Kind { other, text, wideText, array, dictionary };
    struct Object {
        Kind kind;
        std::size_t begin;
        std::size_t size;
    };

    bool readTrailer();
    std::optional<Object> object(std::uint64_t number) const;
    std::optional<PropertyList> value(std::uint64_t number);
    std::optional<PropertyList> container(const Object& object);
    PropertyList::Value text(const Object& object) const;
    PropertyList::Value wideText(const Object& object) const;
    // Reads a big-endian number. Returns std::nullopt if the number extends beyond the end of the file.
    std::optional<std::uint64_t> number(std::size_t begin, std::size_t size) const;

    std::string_view bytes_;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::uint64_t objects_ = 0;
    std::uint64_t root_ = 0;
    std::uint64_t table_ = 0;  // the end of the objects and the start of their offsets
    std::size_t containers_ = 0;
    std::size_t unfoldedBytes_ = 0;
};

std::optional<PropertyList> BinaryReader::read() {
    return readTrailer() ? value(root_) : std::nullopt;
}

bool BinaryReader::readTrailer() {
    if (bytes_.size() < binaryMagic.size() + trailerSize) return false;
    const std::size_t trailer = bytes_.size() - trailerSize;
    offsetSize_ = static_cast<unsigned char>(bytes_[trailer + 6]);
    referenceSize_ = static_cast<unsigned char>(bytes_[trailer + 7]);
    objects_ = *number(trailer + 8, 8);
    root_ = *number(trailer + 16, 8);
    table_ = *number(trailer + 24, 8);
    const auto isSize = [](std::size_t size) { return size >= 1 && size <= sizeof(std::uint64_t); };
    return isSize(offsetSize_) && isSize(referenceSize_) && root_ < objects_ &&
           table_ >= binaryMagic.size() && table_ <= trailer && objects_ <= (trailer - table_) / offsetSize_;
}

std::optional<PropertyList> BinaryReader::value(std::uint64_t number) {
    const auto found = object(number);
    if (!found) return std::nullopt;
    unfoldedBytes_ += 1 + found->size;
    if (unfoldedBytes_ > maxUnfoldedBytes) return std::nullopt;
    switch (found->kind) {
        case Kind::other: return PropertyList(PropertyList::Other{});
        case Kind::text: return PropertyList(text(*found));
        case Kind::wideText: return PropertyList(wideText(*found));
        case Kind::array:
        case Kind::dictionary: break;
    }
    return container(*found);
}

// Reads an array's values, or a dictionary's keys followed by its values.
std::optional<PropertyList> BinaryReader::container(const Object& object) {
    if (++containers_ > PropertyList::maxContainers) return std::nullopt;
    PropertyList::Array values;
    for (std::size_t at = 0; at < object.size; at += referenceSize_) {
        auto next = value(*number(object.begin + at, referenceSize_));
        if (!next) return std::nullopt;
        values.push_back(*std::move(next));
    }
    if (object.kind == Kind::array) return PropertyList(std::move(values));

    PropertyList::Dictionary entries;
    const std::size_t count = values.size() / 2;
    for (std::size_t i = 0; i < count; ++i) {
        auto key = values[i].asString();
        if (!key) return std::nullopt;
        entries.push_back({.key = *std::move(key), .value = std::move(values[count + i])});
    }
    return dictionaryOf(std::move(entries));
}

std::optional<BinaryReader::Object> BinaryReader::object(std::uint64_t wanted) const {
    if (wanted >= objects_) return std::nullopt;
    const auto offset = number(table_ + wanted * offsetSize_, offsetSize_);
    if (!offset || *offset < binaryMagic.size() || *offset >= table_) return std::nullopt;
    const auto marker = static_cast<unsigned char>(bytes_[*offset]);
    const unsigned kind = marker >> 4U;
    std::uint64_t count = marker & 0x0FU;
    std::uint64_t begin = *offset + 1;
    if (kind >= 4 && kind != 8 && count == 0x0F) {  // the count follows as a number object
        const auto size = number(begin, 1);
        if (!size || (*size >> 4U) != 1 || (*size & 0x0FU) > 3) return std::nullopt;
        const auto stored = number(begin + 1, std::size_t{1} << (*size & 0x0FU));
        if (!stored) return std::nullopt;
        count = *stored;
        begin += 1 + (std::uint64_t{1} << (*size & 0x0FU));
    }
    if (count > bytes_.size()) return std::nullopt;

    Object object{.kind = Kind::other, .begin = begin, .size = 0};
    switch (kind) {
        case 0x0: break;
        case 0x1:
        case 0x2: object.size = std::size_t{1} << count; break;
        case 0x3: object.size = 8; break;
        case 0x4: object.size = count; break;
        case 0x5: object = {.kind = Kind::text, .begin = begin, .size = count}; break;
        case 0x6: object = {.kind = Kind::wideText, .begin = begin, .size = 2 * count}; break;
        case 0x8: object.size = count + 1; break;
        case 0xA: object = {.kind = Kind::array, .begin = begin, .size = count * referenceSize_}; break;
        case 0xD:
            object = {.kind = Kind::dictionary, .begin = begin, .size = 2 * count * referenceSize_};
            break;
        default: return std::nullopt;
    }
    if (begin > table_ || object.size > table_ - begin) return std::nullopt;
    return object;
}

PropertyList::Value BinaryReader::text(const Object& object) const {
    const std::string_view bytes = bytes_.substr(object.begin, object.size);
    if (!isUtf8(bytes)) return PropertyList::Other{};
    return std::string(bytes);
}

// Decodes big-endian UTF-16. Returns Other for an unpaired surrogate.
PropertyList::Value BinaryReader::wideText(const Object& object) const {
    std::string utf8;
    char32_t high = 0;
    for (std::size_t at = object.begin; at < object.begin + object.size; at += 2) {
        auto unit = static_cast<char32_t>(*number(at, 2));
        const bool isLow = unit >= 0xDC00 && unit <= 0xDFFF;
        if (isLow != (high != 0)) return PropertyList::Other{};
        if (isLow) unit = 0x10000 + ((high - 0xD800) << 10U) + (unit - 0xDC00);
        high = unit >= 0xD800 && unit <= 0xDBFF ? unit : 0;
        if (high == 0) appendUtf8(utf8, unit);
    }
    if (high != 0) return PropertyList::Other{};
    return utf8;
}

std::optional<std::uint64_t> BinaryReader::number(std::size_t begin, std::size_t size) const {
    if (begin > bytes_.size() || size > bytes_.size() - begin) return std::nullopt;
    std::uint64_t number = 0;
    for (const char byte : bytes_.substr(begin, size))
        number = number << 8U | static_cast<unsigned char>(byte);
    return number;
}

}  // namespace

std::optional<PropertyList> readBinary(std::string_view bytes) {
    return BinaryReader(bytes).read();
}

}  // namespace tarnik::PropertyListReaders
