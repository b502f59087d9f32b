#pragma once

#include <string>

namespace tarnik {

// Sets the name of the calling thread, which debuggers and `ps -T` show. Linux keeps only 15 bytes: a longer
// name loses its prefix "tarnik.", so that its end (a pid or a descriptor) is kept.
void setThreadName(const std::string& name);

}  // namespace tarnik
