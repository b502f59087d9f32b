#include "core/foundation/PropertyList.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <utility>

#include <plist/plist.h>

#include "core/foundation/Utf8.h"
#include "core/foundation/WhiteSpace.h"

namespace tarnik {

namespace {

constexpr std::string_view binaryMagic = "bplist00";

bool isXml(std::string_view text) {
    constexpr std::string_view beginnings[] = {"<?xml", "<!DOCTYPE plist", "<plist"};
    return std::ranges::any_of(beginnings, [text](auto beginning) { return text.starts_with(beginning); });
}

std::string_view withoutByteOrderMark(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return text.starts_with(mark) ? text.substr(mark.size()) : text;
}

// Opening tags that stand in comments and texts are counted too: reading the text as the library reads it
// would be the only way to tell them apart.
bool hasFewContainers(std::string_view xml) {
    std::size_t containers = 0;
    for (const std::string_view tag : {"<array", "<dict"}) {
        for (std::size_t at = xml.find(tag); at != xml.npos; at = xml.find(tag, at + tag.size()))
            ++containers;
    }
    return containers <= PropertyList::maxContainers;
}

// Walks a binary property list without the library, which follows every reference and so can be made to
// unfold a small file without end.
class BinaryWalk {
public:
    explicit BinaryWalk(std::string_view bytes) : bytes_(bytes) {}

    // True when every object that can be reached lies whole within the file, and unfolded they stay small.
    bool isBounded();

private:
    static constexpr std::size_t trailerSize = 32;
    static constexpr std::size_t maxUnfoldedBytes = 16 * PropertyList::maxBytes;

    enum class Kind { plain, text, wideText, array, dictionary };
    struct Object {
        Kind kind;
        std::size_t begin;
        std::size_t size;
    };
    struct Reference {
        std::uint64_t object;
        bool isKey;
    };

    bool readTrailer();
    bool holdsNul(const Object& text) const;
    bool visit(Reference reference);
    std::optional<Object> objectOf(std::uint64_t number) const;
    // None when they aren't there.
    std::optional<std::uint64_t> number(std::size_t begin, std::size_t size) const;

    std::string_view bytes_;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::uint64_t objects_ = 0;
    std::uint64_t root_ = 0;
    std::uint64_t table_ = 0;  // where the objects end and their offsets begin
    std::vector<Reference> waiting_;
    std::size_t containers_ = 0;
    std::size_t unfoldedBytes_ = 0;
};

bool BinaryWalk::isBounded() {
    if (!readTrailer()) return false;
    waiting_.push_back({.object = root_, .isKey = false});
    while (!waiting_.empty()) {
        const Reference next = waiting_.back();
        waiting_.pop_back();
        if (!visit(next)) return false;
    }
    return true;
}

bool BinaryWalk::readTrailer() {
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

bool BinaryWalk::visit(Reference reference) {
    const auto object = objectOf(reference.object);
    if (!object) return false;
    const bool isText = object->kind == Kind::text || object->kind == Kind::wideText;
    if (isText ? holdsNul(*object) : reference.isKey) return false;
    unfoldedBytes_ += 1 + object->size;
    if (unfoldedBytes_ > maxUnfoldedBytes) return false;
    if (isText || object->kind == Kind::plain) return true;

    if (++containers_ > PropertyList::maxContainers) return false;
    const std::size_t count = object->size / referenceSize_;
    const std::size_t keys = object->kind == Kind::dictionary ? count / 2 : 0;
    for (std::size_t i = 0; i < count; ++i) {
        const auto to = number(object->begin + i * referenceSize_, referenceSize_);
        waiting_.push_back({.object = *to, .isKey = i < keys});
    }
    return true;
}

// The library ends the program over a key with a NUL in it.
bool BinaryWalk::holdsNul(const Object& text) const {
    const std::size_t width = text.kind == Kind::wideText ? 2 : 1;
    for (std::size_t at = text.begin; at < text.begin + text.size; at += width) {
        if (*number(at, width) == 0) return true;
    }
    return false;
}

std::optional<BinaryWalk::Object> BinaryWalk::objectOf(std::uint64_t wanted) const {
    if (wanted >= objects_) return std::nullopt;
    const auto offset = number(table_ + wanted * offsetSize_, offsetSize_);
    if (!offset || *offset < binaryMagic.size() || *offset >= table_) return std::nullopt;
    const auto marker = static_cast<unsigned char>(bytes_[*offset]);
    const unsigned kind = marker >> 4U;
    std::uint64_t count = marker & 0x0FU;
    std::uint64_t begin = *offset + 1;
    if (kind >= 4 && kind != 8 && count == 0x0F) {  // the count is a number object of its own
        const auto size = number(begin, 1);
        if (!size || (*size >> 4U) != 1 || (*size & 0x0FU) > 3) return std::nullopt;
        const auto stored = number(begin + 1, std::size_t{1} << (*size & 0x0FU));
        if (!stored) return std::nullopt;
        count = *stored;
        begin += 1 + (std::uint64_t{1} << (*size & 0x0FU));
    }
    if (count > bytes_.size()) return std::nullopt;

    Object object{.kind = Kind::plain, .begin = begin, .size = 0};
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

std::optional<std::uint64_t> BinaryWalk::number(std::size_t begin, std::size_t size) const {
    if (begin > bytes_.size() || size > bytes_.size() - begin) return std::nullopt;
    std::uint64_t number = 0;
    for (const char byte : bytes_.substr(begin, size))
        number = number << 8U | static_cast<unsigned char>(byte);
    return number;
}

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
struct FreeList {
    void operator()(plist_t list) const { ::plist_free(list); }
};
using LibraryList = std::unique_ptr<void, FreeList>;

PropertyList valueOf(plist_t node);

PropertyList::Array arrayOf(plist_t node) {
    PropertyList::Array elements;
    plist_array_iter iterator = nullptr;
    ::plist_array_new_iter(node, &iterator);
    const std::unique_ptr<void, Free> owner(iterator);
    while (true) {
        plist_t item = nullptr;
        ::plist_array_next_item(node, iterator, &item);
        if (item == nullptr) return elements;
        elements.push_back(valueOf(item));
    }
}

PropertyList::Dictionary dictionaryOf(plist_t node) {
    PropertyList::Dictionary entries;
    plist_dict_iter iterator = nullptr;
    ::plist_dict_new_iter(node, &iterator);
    const std::unique_ptr<void, Free> owner(iterator);
    while (true) {
        char* key = nullptr;
        plist_t item = nullptr;
        ::plist_dict_next_item(node, iterator, &key, &item);
        const std::unique_ptr<char, Free> keyOwner(key);
        if (key == nullptr || item == nullptr) break;
        entries.push_back({.key = key, .value = valueOf(item)});
    }
    std::ranges::stable_sort(entries, {}, &PropertyList::Entry::key);
    return entries;
}

PropertyList::Value textOf(plist_t node) {
    std::uint64_t size = 0;
    const char* bytes = ::plist_get_string_ptr(node, &size);
    if (bytes == nullptr) return PropertyList::Other{};
    std::string text(bytes, size);
    if (decodeLossy(text) != text) return PropertyList::Other{};
    return text;
}

PropertyList valueOf(plist_t node) {
    switch (::plist_get_node_type(node)) {
        case PLIST_STRING: return PropertyList(textOf(node));
        case PLIST_ARRAY: return PropertyList(arrayOf(node));
        case PLIST_DICT: return PropertyList(dictionaryOf(node));
        default: return PropertyList(PropertyList::Other{});
    }
}

}  // namespace

std::optional<PropertyList> PropertyList::parse(std::string_view bytes) {
    if (bytes.size() > maxBytes) return std::nullopt;
    plist_t list = nullptr;
    if (bytes.starts_with(binaryMagic)) {
        if (!BinaryWalk(bytes).isBounded()) return std::nullopt;
        ::plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &list);
    } else {
        const std::string_view xml = trimmingWhiteSpace(withoutByteOrderMark(bytes));
        if (!isXml(xml) || xml.contains('\0') || !hasFewContainers(xml)) return std::nullopt;
        ::plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &list);
    }
    const LibraryList owner(list);
    if (list == nullptr) return std::nullopt;
    return valueOf(list);
}

PropertyList::PropertyList(Value value) : value_(std::move(value)) {}

bool PropertyList::isDictionary() const {
    return std::holds_alternative<Dictionary>(value_);
}

std::optional<std::string> PropertyList::asString() const {
    const auto* text = std::get_if<std::string>(&value_);
    return text != nullptr ? std::optional(*text) : std::nullopt;
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

}  // namespace tarnik
