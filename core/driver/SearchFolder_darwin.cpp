#include "core/driver/SearchFolder.h"

#include <fcntl.h>

namespace tarnik {
namespace {

// O_SEARCH of <sys/fcntl.h>, which SDKs before macOS 13 don't declare.
constexpr int searchOnly = 0x40000000 | O_DIRECTORY;

}  // namespace

UniqueFd openForSearch(int at, const std::string& name) {
    return UniqueFd(::openat(at, name.c_str(), searchOnly | O_NOFOLLOW | O_CLOEXEC));
}

}  // namespace tarnik
