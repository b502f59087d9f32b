#pragma once

#include <string>

#include "app/platform/SystemLog.h"

namespace tarnik {

// The unified log's channel of this category, with the bundle identifier as subsystem; what is written is
// kept, and shown to whoever reads the log.
SystemLog macLog(const std::string& category);

}  // namespace tarnik
