#pragma once

#include <string>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Opens a folder for lookups of names in it, which needs no permission to list it. Does not follow a link.
// Returns a closed descriptor and sets errno on failure.
UniqueFd openForSearch(int at, const std::string& name);

}  // namespace tarnik
