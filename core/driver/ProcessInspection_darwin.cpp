#include "core/driver/ProcessInspection.h"

#include <array>

#include <libproc.h>

namespace tarnik::ProcessInspection {

std::optional<std::string> executablePath(pid_t pid) {
    std::array<char, 4096> path{};
    if (::proc_pidpath(pid, path.data(), static_cast<uint32_t>(path.size())) < 1) return std::nullopt;
    path.back() = '\0';
    return std::string(path.data());
}

}  // namespace tarnik::ProcessInspection
