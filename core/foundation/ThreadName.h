#pragma once

#include <string>

namespace tarnik {

// Sets the name of the calling thread. Debuggers and `ps -T` show the name. Linux keeps only 15 bytes. A
// longer name loses its prefix "tarnik.", so that a pid or a descriptor at the end is kept.
void setThreadName(const std::string& name);

}  // namespace tarnik
