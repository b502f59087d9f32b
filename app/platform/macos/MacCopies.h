#pragma once

#include "app/platform/BundleOperations.h"

namespace tarnik {

OtherCopies macCopies();

}  // namespace tarnik
