#pragma once

#include "app/platform/BundleOperations.h"

namespace tarnik {

BundleFiles macBundleFiles();

}  // namespace tarnik
