#include "core/foundation/ThreadName.h"

#include <string_view>

#include <pthread.h>

namespace tarnik {

// pthread_setname_np(3) fails with ERANGE for more than 16 bytes, including the terminating NUL.
void setThreadName(const std::string& name) {
    constexpr std::size_t longest = 15;
    constexpr std::string_view prefix = "tarnik.";
    std::string shown = name;
    if (shown.size() > longest && shown.starts_with(prefix)) shown.erase(0, prefix.size());
    if (shown.size() > longest) shown.resize(longest);
    ::pthread_setname_np(::pthread_self(), shown.c_str());
}

}  // namespace tarnik
