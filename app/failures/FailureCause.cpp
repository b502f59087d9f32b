#include "app/failures/FailureCause.h"

#include <cerrno>

#include "app/texts/CauseTexts.h"
#include "core/foundation/Json.h"

namespace tarnik {
namespace {

using Cause = std::optional<FailureCause>;

Cause causeOfStatus(int status) {
    constexpr int proxyLogin = 407;
    constexpr int networkLogin = 511;
    if (status == proxyLogin) return FailureCause::proxyLogin;
    if (status == networkLogin) return FailureCause::captivePortal;
    return std::nullopt;
}

Cause causeOfCode(int code) {
    switch (code) {
        case ENOSPC:
        case EDQUOT: return FailureCause::diskFull;
        case EACCES:
        case EPERM:
        case EROFS: return FailureCause::notAllowed;
        default: return std::nullopt;
    }
}

// Searches the output of tar for the system's messages, because tar doesn't print their codes.
Cause causeInOutput(const std::string& output) {
    for (const int code : {ENOSPC, EDQUOT, EACCES, EPERM, EROFS})
        if (output.contains(systemMessage(code))) return causeOfCode(code);
    return std::nullopt;
}

struct InstallCause {
    Cause operator()(const InstallFailure& failure) const {
        if (failure.kind == InstallFailure::Kind::extract) return causeInOutput(failure.what);
        return causeOfStatus(failure.status);
    }
    Cause operator()(const NodeRelease::Failure& failure) const {
        const bool isNoReleaseFile = failure.reason == NodeRelease::Failure::Reason::notJSON;
        return isNoReleaseFile ? Cause(FailureCause::captivePortal) : std::nullopt;
    }
    Cause operator()(const NodeHome::ClaimError&) const { return std::nullopt; }
    Cause operator()(const SystemError& error) const { return causeOf(error); }
    Cause operator()(const HttpError& error) const { return causeOf(error); }
    Cause operator()(const ToolStartError& failure) const { return causeOf(failure.error); }
};

}  // namespace

Cause causeOf(const HttpError& error) {
    switch (error.kind) {
        case HttpError::Kind::badStatus: return causeOfStatus(error.code);
        case HttpError::Kind::file: return causeOfCode(error.code);
        case HttpError::Kind::unresolved:
        case HttpError::Kind::unreachable: return FailureCause::offline;
        case HttpError::Kind::proxyLogin: return FailureCause::proxyLogin;
        case HttpError::Kind::untrusted: return FailureCause::untrustedCertificate;
        case HttpError::Kind::notValidNow: return FailureCause::clock;
        case HttpError::Kind::tooLarge:
        case HttpError::Kind::cutShort:
        case HttpError::Kind::stalled:
        case HttpError::Kind::transport: break;
    }
    return std::nullopt;
}

Cause causeOf(const SystemError& error) {
    return causeOfCode(error.code);
}

Cause causeOf(const InstallError& error) {
    return std::visit(InstallCause(), error);
}

Cause causeOfAnswer(std::string_view body) {
    if (Json::parse(body, body.size())) return std::nullopt;
    return FailureCause::captivePortal;
}

std::string_view describe(FailureCause cause) {
    switch (cause) {
        case FailureCause::offline: return CauseTexts::offline;
        case FailureCause::proxyLogin: return CauseTexts::proxyLogin;
        case FailureCause::captivePortal: return CauseTexts::captivePortal;
        case FailureCause::clock: return CauseTexts::clock;
        case FailureCause::untrustedCertificate: return CauseTexts::untrustedCertificate;
        case FailureCause::diskFull: return CauseTexts::diskFull;
        case FailureCause::notAllowed: break;
    }
    return CauseTexts::notAllowed;
}

std::string causeLine(FailureCause cause, Language language) {
    return textIn(language, CauseTexts::line, {{"cause", textIn(language, describe(cause))}});
}

std::string withCause(std::string message, std::optional<FailureCause> cause) {
    if (!cause) return message;
    if (!message.ends_with('.')) message += '.';
    return message + " " + causeLine(*cause);
}

}  // namespace tarnik
