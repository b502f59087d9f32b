#include "app/journal/JournalEvent.h"

#include "core/foundation/Json.h"

namespace tarnik {
namespace {

struct ValueJson {
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(const std::string& text) const { return quotedJson(text); }
};

std::optional<std::string> textMember(const Json& json, std::string_view name) {
    const Json* found = json.member(name);
    return found != nullptr ? found->asString() : std::nullopt;
}

std::optional<JournalEvent::Value> valueOf(const Json& json) {
    if (auto text = json.asString()) return *std::move(text);
    if (const auto number = json.asInteger()) return *number;
    return std::nullopt;
}

}  // namespace

std::optional<std::int64_t> JournalEvent::number(std::string_view field) const {
    const auto found = fields.find(field);
    const auto* value = found != fields.end() ? std::get_if<std::int64_t>(&found->second) : nullptr;
    return value != nullptr ? std::optional(*value) : std::nullopt;
}

std::optional<std::string> JournalEvent::text(std::string_view field) const {
    const auto found = fields.find(field);
    const auto* value = found != fields.end() ? std::get_if<std::string>(&found->second) : nullptr;
    return value != nullptr ? std::optional(*value) : std::nullopt;
}

std::string JournalEvent::json() const {
    std::string json = R"({"time":")" + isoMilliseconds(time) + R"(","event":)" + quotedJson(nameOf(code)) +
                       R"(,"sentence":)" + quotedJson(sentence);
    if (!fields.empty()) {
        std::string members;
        for (const auto& [name, value] : fields)
            members += "," + quotedJson(name) + ":" + std::visit(ValueJson(), value);
        json += R"(,"fields":{)" + members.substr(1) + "}";
    }
    return json + "}";
}

std::optional<JournalEvent> JournalEvent::parse(std::string_view line) {
    const auto json = Json::parse(line, maxLineBytes);
    if (!json) return std::nullopt;
    const auto time = parseIsoMilliseconds(textMember(*json, "time").value_or(""));
    const auto code = eventCodeOf(textMember(*json, "event").value_or(""));
    auto sentence = textMember(*json, "sentence");
    if (!time || !code || !sentence) return std::nullopt;
    JournalEvent event{.time = *time, .code = *code, .sentence = *std::move(sentence), .fields = {}};
    if (const Json* fields = json->member("fields")) {
        for (const auto& [name, value] : fields->members()) {
            if (auto known = valueOf(value)) event.fields.emplace(name, *std::move(known));
        }
    }
    return event;
}

}  // namespace tarnik
