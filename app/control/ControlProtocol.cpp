#include "app/control/ControlProtocol.h"

#include <algorithm>
#include <array>
#include <utility>

#include "app/control/JsonObject.h"
#include "app/texts/ControlTexts.h"

namespace tarnik::ControlProtocol {

namespace {

using Kind = ControlRequest::Kind;
using Replace = ControlRequest::Replace;

constexpr std::array<std::pair<Kind, std::string_view>, 8> words{{{Kind::status, "status"},
                                                                  {Kind::watch, "watch"},
                                                                  {Kind::connect, "connect"},
                                                                  {Kind::confirm, "confirm"},
                                                                  {Kind::cancel, "cancel"},
                                                                  {Kind::restart, "restart"},
                                                                  {Kind::open, "open"},
                                                                  {Kind::quit, "quit"}}};

std::string wordOf(Kind kind) {
    return std::string(std::ranges::find(words, kind, &decltype(words)::value_type::first)->second);
}

std::optional<std::int64_t> integerMember(const Json& object, std::string_view key) {
    const Json* found = object.member(key);
    return found != nullptr ? found->asInteger() : std::nullopt;
}

std::optional<std::string> textMember(const Json& object, std::string_view key) {
    const Json* found = object.member(key);
    return found != nullptr ? found->asString() : std::nullopt;
}

std::unexpected<ControlAnswer> refused(std::int64_t id, std::string_view code, std::string_view message) {
    return std::unexpected(
        ControlAnswer{.id = id, .content = ControlError{std::string(code), std::string(message)}});
}

JsonObject message(std::int64_t id) {
    JsonObject object;
    object.addNumber("version", version);
    object.addNumber("id", id);
    return object;
}

}  // namespace

std::string print(const ControlRequest& request) {
    auto object = message(request.id);
    object.addText("request", wordOf(request.kind));
    if (request.kind == Kind::connect) {
        object.addText("link", request.link);
        object.addFlag("replace", request.replace == Replace::yes);
    }
    return object.text();
}

std::expected<ControlRequest, ControlAnswer> parseRequest(std::string_view line) {
    const auto json = Json::parse(line, maxRequestBytes);
    const auto id = json ? integerMember(*json, "id") : std::nullopt;
    if (!id) return refused(0, ControlErrors::malformed, ControlTexts::malformed);
    if (integerMember(*json, "version") != version)
        return refused(*id, ControlErrors::version, ControlTexts::otherVersion);
    const auto word = textMember(*json, "request");
    const auto* known = std::ranges::find(words, word.value_or(""), &decltype(words)::value_type::second);
    if (known == words.end())
        return refused(*id, ControlErrors::unknownRequest, ControlTexts::unknownRequest);

    const Json* replace = json->member("replace");
    const auto replaces = replace != nullptr ? replace->asBoolean() : false;
    const auto link = textMember(*json, "link");
    if (!replaces || (known->first == Kind::connect && !link))
        return refused(*id, ControlErrors::malformed, ControlTexts::malformed);
    return ControlRequest{.id = *id,
                          .kind = known->first,
                          .link = link.value_or(""),
                          .replace = *replaces ? Replace::yes : Replace::no};
}

std::string printResult(std::int64_t id, std::string_view result, ControlAnswer::Position position) {
    auto object = message(id);
    object.addJson("result", result);
    object.addFlag("end", position == ControlAnswer::Position::last);
    return object.text();
}

std::string printError(std::int64_t id, const ControlError& error) {
    JsonObject content;
    content.addText("code", error.code);
    content.addText("message", error.message);
    auto object = message(id);
    object.addJson("error", content.text());
    object.addFlag("end", true);
    return object.text();
}

std::optional<ControlAnswer> parseAnswer(std::string_view line) {
    using Position = ControlAnswer::Position;
    const auto json = Json::parse(line, maxAnswerBytes);
    if (!json || integerMember(*json, "version") != version) return std::nullopt;
    const auto id = integerMember(*json, "id");
    const Json* end = json->member("end");
    const auto isLast = end != nullptr ? end->asBoolean() : true;
    if (!id || !isLast) return std::nullopt;
    const auto position = *isLast ? Position::last : Position::update;
    const Json* result = json->member("result");
    if (result != nullptr && result->isObject())
        return ControlAnswer{.id = *id, .content = *result, .position = position};
    const Json* error = json->member("error");
    const auto code = error != nullptr ? textMember(*error, "code") : std::nullopt;
    const auto sentence = error != nullptr ? textMember(*error, "message") : std::nullopt;
    if (!code || !sentence) return std::nullopt;
    return ControlAnswer{.id = *id, .content = ControlError{*code, *sentence}};
}

}  // namespace tarnik::ControlProtocol
