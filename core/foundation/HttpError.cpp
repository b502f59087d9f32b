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
        case HttpError::Kind::unresolved:
        case HttpError::Kind::unreachable:
        case HttpError::Kind::proxyLogin:
        case HttpError::Kind::untrusted:
        case HttpError::Kind::notValidNow:
        case HttpError::Kind::transport: break;
    }
    return filled(HttpTexts::failed, {{"reason", error.text}});
}

}  // namespace tarnik
