#include "core/foundation/Http.h"
#include "core/foundation/HttpTexts.h"
#include "core/foundation/Placeholders.h"
#include "core/foundation/SystemError.h"

namespace tarnik {

std::string describe(const HttpError& error) {
    switch (error.kind) {
        case HttpError::Kind::badStatus:
            if (error.code == 200) return std::string(HttpTexts::emptyAnswer);
            return filled(HttpTexts::badStatus, {{"status", std::to_string(error.code)}});
        case HttpError::Kind::tooLarge: return std::string(HttpTexts::tooLarge);
        case HttpError::Kind::cutShort: return std::string(HttpTexts::cutShort);
        case HttpError::Kind::stalled: return std::string(HttpTexts::stalled);
        case HttpError::Kind::file:
            return filled(HttpTexts::notSaved, {{"reason", systemMessage(error.code)}});
        case HttpError::Kind::proxyLogin:
            if (!error.proxy.empty()) return filled(HttpTexts::proxyLogin, {{"proxy", error.proxy}});
            break;
        case HttpError::Kind::unresolved:
        case HttpError::Kind::unreachable:
        case HttpError::Kind::untrusted:
        case HttpError::Kind::notValidNow:
        case HttpError::Kind::transport: break;
    }
    if (error.proxy.empty()) return filled(HttpTexts::failed, {{"reason", error.text}});
    return filled(HttpTexts::failedThroughProxy, {{"reason", error.text}, {"proxy", error.proxy}});
}

bool isWithoutConnection(const HttpError& error) {
    using enum HttpError::Kind;
    return error.kind == unresolved || error.kind == unreachable || error.kind == stalled;
}

HttpError through(const ProxyRoute& route, HttpError error) {
    if (route.isDirect()) return error;
    const bool isLogin =
        error.kind == HttpError::Kind::badStatus && error.code == HttpError::proxyLoginStatus;
    if (isLogin) error = {.kind = HttpError::Kind::proxyLogin};
    // libcurl quotes the address of a proxy that it can't parse, with the user's name and password.
    const bool mayBeSecret = route.address.contains('@') && isWithoutConnection(error);
    if (mayBeSecret && !error.text.empty()) error.text = "no connection";
    error.proxy = route.name();
    return error;
}

}  // namespace tarnik
