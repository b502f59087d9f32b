#include "core/driver/ProcessInspection.h"

#include <array>

#include <unistd.h>

namespace tarnik::ProcessInspection {

std::optional<std::string> executablePath(pid_t pid) {
    std::array<char, 4096> path{};
    const std::string link = "/proc/" + std::to_string(pid) + "/exe";
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    if (length < 1) return std::nullopt;
    return std::string(path.data(), static_cast<std::size_t>(length));
}

}  // namespace tarnik::ProcessInspection
