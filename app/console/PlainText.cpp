#include "app/console/PlainText.h"

#include "core/foundation/Utf8.h"

namespace tarnik {

std::string shown(std::string_view text, std::size_t maxBytes) {
    std::string plain;
    for (const char c : text.substr(0, maxBytes)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7f) plain += c;
    }
    plain = decodeLossy(plain);
    if (text.size() > maxBytes) plain += "...";
    return plain;
}

}  // namespace tarnik
