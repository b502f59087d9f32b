#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "app/platform/BundleOperations.h"
#include "core/foundation/Files.h"

namespace tarnik {

// How clearing the quarantine attribute of a bundle went.
struct QuarantineReport {
    std::size_t cleared = 0;  // entries that had it
    std::size_t failed = 0;   // entries that may have it still, or could not be looked into
    std::optional<SystemError> firstError;

    bool healed() const { return failed == 0; }

    // What the relocation record says of it.
    std::vector<std::string> fields() const;
};

// Clears the attribute of the entry at `top` and of all below it. Follows no link, and goes on after a
// failure.
QuarantineReport clearQuarantineBelow(const std::string& top, const BundleFiles& files);

}  // namespace tarnik
