#pragma once

#include <string>
#include <string_view>
#include <vector>

// Writes property lists for tests, independently of the parser.
namespace tarnik::propertyLists {

inline std::string xml(std::string_view body) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST "
           "1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">" +
           std::string(body) + "</plist>\n";
}

inline std::string bigEndian(std::size_t number, std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = size; i > 0; number >>= 8U) bytes[--i] = static_cast<char>(number & 0xFFU);
    return bytes;
}

// Returns a binary object with a count: kind 5 is a string, 10 an array, 13 a dictionary. References have two
// bytes.
inline std::string binaryObject(unsigned kind, std::size_t count, const std::string& payload) {
    return std::string{static_cast<char>(kind << 4U | 0x0FU), '\x11'} + bigEndian(count, 2) + payload;
}

inline std::string binaryText(const std::string& text) {
    return binaryObject(5, text.size(), text);
}

inline std::string binaryArray(const std::vector<std::size_t>& elements) {
    std::string references;
    for (const std::size_t element : elements) references += bigEndian(element, 2);
    return binaryObject(10, elements.size(), references);
}

// Takes the keys, then the values in the same order.
inline std::string binaryDictionary(const std::vector<std::size_t>& keysAndValues) {
    std::string references;
    for (const std::size_t reference : keysAndValues) references += bigEndian(reference, 2);
    return binaryObject(13, keysAndValues.size() / 2, references);
}

// The first object is the root.
inline std::string binary(const std::vector<std::string>& objects) {
    std::string bytes = "bplist00";
    std::string offsets;
    for (const auto& object : objects) {
        offsets += bigEndian(bytes.size(), 4);
        bytes += object;
    }
    const std::size_t table = bytes.size();
    return bytes + offsets + std::string(6, '\0') + "\x04\x02" + bigEndian(objects.size(), 8) +
           bigEndian(0, 8) + bigEndian(table, 8);
}

}  // namespace tarnik::propertyLists
