#include "app/control/JsonObject.h"

#include "core/foundation/Json.h"
#include "core/foundation/Utf8.h"

namespace tarnik {

void JsonObject::addText(std::string_view key, const std::optional<std::string>& value) {
    addJson(key, value ? quotedJson(decodeLossy(*value)) : "null");
}

void JsonObject::addNumber(std::string_view key, std::optional<std::int64_t> value) {
    addJson(key, value ? std::to_string(*value) : "null");
}

void JsonObject::addFlag(std::string_view key, bool value) {
    addJson(key, value ? "true" : "false");
}

void JsonObject::addJson(std::string_view key, std::string_view json) {
    if (!members_.empty()) members_ += ',';
    members_ += quotedJson(key);
    members_ += ':';
    members_ += json;
}

}  // namespace tarnik
