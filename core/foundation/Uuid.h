#pragma once

#include <string>

namespace tarnik {

// Returns a new random UUID (RFC 9562, version 4) in lower case, with hyphens.
std::string randomUuid();

}  // namespace tarnik
