#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/foundation/PropertyList.h"

namespace tarnik {

// The text of an Info.plist for the key; none when there is none, or it is empty.
std::optional<std::string> infoText(const PropertyList& info, std::string_view key);

}  // namespace tarnik
