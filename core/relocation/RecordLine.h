#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/foundation/WallTime.h"
#include "core/relocation/Relocation.h"

namespace tarnik::Relocation {

using RecordTime = WallTime;

// Returns one entry of the relocation record without a line feed. Tabs separate the fields. A control
// character in a field is written as a percent sign and two hexadecimal digits, such as %09.
//
// `healed` is true if the quarantine attribute was cleared everywhere, false if that failed, and std::nullopt
// if it was not tried.
std::string recordLine(const Launch& launch, const Decision& decision, std::optional<bool> healed,
                       const std::vector<std::string>& extra, RecordTime at);

// Returns the entry for an opened window.
std::string windowLine(std::string_view reason, RecordTime at);

}  // namespace tarnik::Relocation
