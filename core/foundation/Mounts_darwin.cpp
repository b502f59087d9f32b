#include "core/foundation/Mounts.h"

#include <cstddef>

#include <sys/mount.h>
#include <sys/param.h>

namespace tarnik {

std::optional<std::vector<std::string>> mountPoints() {
    constexpr std::size_t mostMounts = 1024;
    std::vector<struct statfs> mounts(mostMounts);
    const int size = static_cast<int>(mounts.size() * sizeof(struct statfs));
    const int count = ::getfsstat(mounts.data(), size, MNT_NOWAIT);
    if (count < 0 || static_cast<std::size_t>(count) == mostMounts) return std::nullopt;
    std::vector<std::string> paths;
    mounts.resize(static_cast<std::size_t>(count));
    for (const auto& mount : mounts) paths.emplace_back(&mount.f_mntonname[0]);
    return paths;
}

}  // namespace tarnik
