#include "core/pairing/JoinLink.h"

#include <algorithm>
#include <vector>

#include "core/foundation/Json.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik::JoinLink {

namespace {

// The host in links of the application's own scheme.
constexpr std::string_view appHost = "connect";

std::optional<std::string> takeCode(std::string_view text) {
    return isCode(text) ? std::optional(std::string(text)) : std::nullopt;
}

std::optional<std::string> codeOfAppLink(const Url& link) {
    if (link.host() != appHost) return std::nullopt;
    const auto item = std::ranges::find(link.queryItems(), "code", &Url::QueryItem::name);
    if (item == link.queryItems().end() || !item->value) return std::nullopt;
    return takeCode(*item->value);
}

std::vector<std::string_view> pathPieces(std::string_view path) {
    std::vector<std::string_view> pieces;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        if (end > 0) pieces.push_back(path.substr(0, end));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return pieces;
}

std::optional<std::string> codeOfWebLink(const Url& link, const Url& webOrigin) {
    const bool sameOrigin = link.scheme() == webOrigin.scheme() && link.host() == webOrigin.host() &&
                            link.port() == webOrigin.port();
    if (!sameOrigin || link.hasUserInfo()) return std::nullopt;
    const auto pieces = pathPieces(link.path());
    if (pieces.size() != 2 || pieces[0] != "c") return std::nullopt;
    return takeCode(pieces[1]);
}

bool isJoinAddress(const Url& url, std::string_view code) {
    if (!url.host()) return false;
    const bool isLoopback = url.host() == "localhost" || url.host() == "127.0.0.1";
    if (url.scheme() != "https" && !(url.scheme() == "http" && isLoopback)) return false;
    if (url.hasUserInfo() || url.hasQueryOrFragment()) return false;
    return url.path().ends_with("/c/" + std::string(code));
}

std::optional<std::string> findCode(std::string_view text, const Url& webOrigin) {
    if (isCode(text)) return std::string(text);
    // The query and the fragment of a web link are not parsed, so they may contain characters that are
    // invalid in a URL.
    const auto link = Url::parse(text.substr(0, text.find_first_of("?#")));
    if (!link) return std::nullopt;
    if (link->scheme() != TarnikIdentity::urlScheme) return codeOfWebLink(*link, webOrigin);
    const auto appLink = Url::parse(text.substr(0, text.find('#')));
    return appLink ? codeOfAppLink(*appLink) : std::nullopt;
}

}  // namespace

bool isCode(std::string_view text) {
    constexpr std::size_t length = 22;
    return text.size() == length && std::ranges::all_of(text, [](char letter) {
               return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z') ||
                      (letter >= '0' && letter <= '9') || letter == '_' || letter == '-';
           });
}

std::optional<JoinCode> code(std::string_view text, const Url& webOrigin) {
    if (text.size() > maxTextBytes) return std::nullopt;
    auto found = findCode(trimWhitespace(text), webOrigin);
    if (!found) return std::nullopt;
    return JoinCode{.text = *std::move(found), .link = std::string(text)};
}

Url answerURL(std::string_view code, const Url& webOrigin) {
    return webOrigin.appending("c").appending(code).appending("app");
}

std::optional<Url> joinURL(std::string_view answer, std::string_view code) {
    const auto json = Json::parse(answer, maxAnswerBytes);
    if (!json) return std::nullopt;
    const Json* version = json->member("v");
    const Json* join = json->member("join");
    if (version == nullptr || version->asInteger() != 1 || join == nullptr) return std::nullopt;
    auto url = Url::parse(join->asString().value_or(""));
    if (!url || !isJoinAddress(*url, code)) return std::nullopt;
    return url;
}

}  // namespace tarnik::JoinLink
