#pragma once

#include <string>

namespace tarnik {

// A fresh random UUID (RFC 9562, version 4), lower case with hyphens.
std::string randomUuid();

}  // namespace tarnik
