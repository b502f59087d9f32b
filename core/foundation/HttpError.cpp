#include "core/foundation/Http.h"
#include "core/foundation/SystemError.h"

namespace tarnik {

std::string describe(const HttpError& error) {
    switch (error.kind) {
        case HttpError::Kind::badStatus:
            if (error.code == 200) return "The server sent an empty answer.";
            return "The server answered with status " + std::to_string(error.code) + ".";
        case HttpError::Kind::tooLarge: return "The server sent more than is allowed.";
        case HttpError::Kind::cutShort: return "The connection ended before everything had arrived.";
        case HttpError::Kind::stalled: return "The server didn't answer in time, or sent too slowly.";
        case HttpError::Kind::file:
            return "The download couldn't be saved (" + systemMessage(error.code) + ").";
        case HttpError::Kind::unresolved:
        case HttpError::Kind::unreachable:
        case HttpError::Kind::proxyLogin:
        case HttpError::Kind::untrusted:
        case HttpError::Kind::notValidNow:
        case HttpError::Kind::transport: break;
    }
    return "The connection failed (" + error.text + ").";
}

}  // namespace tarnik
