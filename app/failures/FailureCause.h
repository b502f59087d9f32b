#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/texts/Translation.h"
#include "core/foundation/Http.h"
#include "core/node/InstallFailure.h"

namespace tarnik {

// A cause that the user can remove. The doctor, a failed install and a failed check of a link use the same
// causes.
enum class FailureCause {
    offline,  // no connection, or no answer from the name service
    proxyLogin,
    captivePortal,
    clock,
    untrustedCertificate,
    diskFull,
    notAllowed,
};

// Return the cause of the failure, or std::nullopt if the failure has another cause.
std::optional<FailureCause> causeOf(const HttpError& error);
std::optional<FailureCause> causeOf(const SystemError& error);
std::optional<FailureCause> causeOf(const InstallError& error);

// Returns captivePortal if the answer isn't JSON, because then a network answered in place of the server.
// Returns std::nullopt for JSON. `body` is the answer to a link or a release file.
std::optional<FailureCause> causeOfAnswer(std::string_view body);

// Returns a sentence with the cause and what the user can do.
std::string_view describe(FailureCause cause);

// Returns "Cause: " and the description, for the line below a failure.
std::string causeLine(FailureCause cause, Language language = Language::english);

// Returns the message with the cause behind it, for texts of one line.
std::string withCause(std::string message, std::optional<FailureCause> cause);

}  // namespace tarnik
