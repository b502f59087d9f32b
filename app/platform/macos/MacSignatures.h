#pragma once

#include "app/platform/BundleOperations.h"

namespace tarnik {

CodeSignatures macSignatures();

}  // namespace tarnik
