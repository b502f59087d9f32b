#include "core/foundation/UserHome.h"

#include <cerrno>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace tarnik {

std::string userHome() {
    constexpr std::size_t largestEntry = std::size_t{1} << 20U;
    for (std::size_t size = 1024; size <= largestEntry; size *= 2) {
        std::vector<char> text(size);
        passwd entry{};
        passwd* found = nullptr;
        const int code = ::getpwuid_r(::getuid(), &entry, text.data(), text.size(), &found);
        if (code == ERANGE) continue;
        if (code != 0 || found == nullptr || found->pw_dir == nullptr) break;
        const std::string home = found->pw_dir;
        return home.starts_with('/') ? home : "/";
    }
    return "/";
}

}  // namespace tarnik
