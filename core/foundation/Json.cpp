#include "core/foundation/Json.h"

namespace tarnik {

namespace {

void appendEscaped(std::string& json, char character) {
    constexpr std::string_view digits = "0123456789abcdef";
    const auto number = static_cast<unsigned char>(character);
    switch (character) {
        case '\t': json += "\\t"; return;
        case '\n': json += "\\n"; return;
        case '\r': json += "\\r"; return;
        case '"': json += "\\\""; return;
        case '\\': json += "\\\\"; return;
        default: break;
    }
    if (number >= 0x20) {
        json += character;
        return;
    }
    json += "\\u00";
    json += digits[number >> 4U];
    json += digits[number & 0x0FU];
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

}  // namespace tarnik
