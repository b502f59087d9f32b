#include "core/foundation/Uuid.h"

#include <random>

#include "core/foundation/Encoding.h"

namespace tarnik {

std::string randomUuid() {
    std::random_device random;
    std::string bytes(16, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    bytes[6] = static_cast<char>((bytes[6] & 0x0f) | 0x40);  // version 4
    bytes[8] = static_cast<char>((bytes[8] & 0x3f) | 0x80);  // the variant of the RFC
    std::string text = encodeHex(bytes);
    for (const std::size_t at : {8U, 13U, 18U, 23U}) text.insert(at, 1, '-');
    return text;
}

}  // namespace tarnik
