#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/foundation/WallTime.h"
#include "core/relocation/Relocation.h"

namespace tarnik::Relocation {

using RecordTime = WallTime;

// Returns one entry of the relocation record without a line feed. Its fields are separated by tabs; control
// characters in paths and reasons are written as %09 and so on.
//
// `healed` is true if the quarantine attribute was cleared everywhere, or std::nullopt if it was not tried.
std::string recordLine(const Launch& launch, const Decision& decision, std::optional<bool> healed,
                       const std::vector<std::string>& extra, RecordTime at);

// Returns the entry for an opened window.
std::string windowLine(std::string_view reason, RecordTime at);

}  // namespace tarnik::Relocation
