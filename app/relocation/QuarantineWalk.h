#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "app/platform/BundleOperations.h"
#include "core/foundation/Files.h"

namespace tarnik {

// The result of clearing the quarantine attribute of a bundle.
struct QuarantineReport {
    std::size_t cleared = 0;  // entries that had the attribute
    std::size_t failed = 0;   // entries that may still have it, and folders that could not be listed
    std::optional<SystemError> firstError;

    bool healed() const { return failed == 0; }

    // Returns the fields for the relocation record.
    std::vector<std::string> fields() const;
};

// Clears the quarantine attribute of `top` and of all entries below it. Doesn't follow symbolic links.
// Continues after a failure.
QuarantineReport clearQuarantineBelow(const std::string& top, const BundleFiles& files);

}  // namespace tarnik
