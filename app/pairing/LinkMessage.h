#pragma once

#include <expected>
#include <optional>
#include <string>

#include "app/failures/FailureCause.h"
#include "core/foundation/Url.h"

namespace tarnik {

// The links that the organisation allows.
struct LinkPermission {
    bool pairing = true;
    bool replacing = true;  // a link on a machine that has joined
};

// A line about the last link.
struct LinkMessage {
    std::string text;
    std::optional<FailureCause> cause = {};  // why the link couldn't be checked
};

// The join address of a link, or the cause of a failed check. An expired link has no cause.
using CheckedLink = std::expected<Url, std::optional<FailureCause>>;

}  // namespace tarnik
