#pragma once

#include <string>
#include <variant>

#include "core/foundation/SystemError.h"

namespace tarnik {

// Why a link can't be worked on now; nothing was changed then.
enum class PairingFailure { notInstalled, busy };

// Why a pairing did not begin: refused, or its command could not be started.
using PairingError = std::variant<PairingFailure, SystemError>;

// The message for the person.
std::string describe(PairingFailure failure);
std::string describe(const PairingError& error);

}  // namespace tarnik
