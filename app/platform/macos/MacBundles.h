#pragma once

#include <optional>
#include <string>

#include "app/platform/BundleOperations.h"

namespace tarnik {

// Without operations for a program outside a bundle, which can't be moved.
BundleOperations macBundles(const std::optional<std::string>& ownBundle);

}  // namespace tarnik
