#pragma once

#include <string>

namespace tarnik {

// Names the calling thread, as debuggers and `ps -T` show it. Where the system keeps only 15 bytes, a name
// that is longer loses its leading "tarnik.", so that the telling end (a pid, a descriptor) stays.
void setThreadName(const std::string& name);

}  // namespace tarnik
