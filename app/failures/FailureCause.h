#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/foundation/Http.h"
#include "core/node/InstallFailure.h"

namespace tarnik {

// A cause of a failure that the user can remove. The doctor, a failed install and a failed check of a link
// use the same classification.
enum class FailureCause {
    offline,  // no connection, or no answer from the name service
    proxyLogin,
    captivePortal,
    clock,
    untrustedCertificate,
    diskFull,
    notAllowed,
};

// Return std::nullopt if the failure has another cause.
std::optional<FailureCause> causeOf(const HttpError& error);
std::optional<FailureCause> causeOf(const SystemError& error);
std::optional<FailureCause> causeOf(const InstallError& error);

// Returns the cause of an answer to a link or a release file that isn't JSON: a network that answers in place
// of the server.
std::optional<FailureCause> causeOfAnswer(std::string_view body);

// Returns a sentence with the cause and what the user can do.
std::string_view describe(FailureCause cause);

// Returns "Cause: " and the description, for the line below a failure.
std::string causeLine(FailureCause cause);

}  // namespace tarnik
