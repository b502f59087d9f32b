#include "core/process/ExitStatus.h"

namespace tarnik {

std::string describe(const ExitStatus& status) {
    const char* word = status.kind == ExitStatus::Kind::exited ? "exit " : "signal ";
    return word + std::to_string(status.number);
}

}  // namespace tarnik
