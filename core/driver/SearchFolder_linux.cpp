#include "core/driver/SearchFolder.h"

#include <fcntl.h>

namespace tarnik {

UniqueFd openForSearch(int at, const std::string& name) {
    return UniqueFd(::openat(at, name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

}  // namespace tarnik
