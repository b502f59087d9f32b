#include "core/foundation/ThreadName.h"

#include <pthread.h>

namespace tarnik {

// pthread_setname_np(3) on Darwin names only the calling thread; up to 63 bytes.
void setThreadName(const std::string& name) {
    ::pthread_setname_np(name.substr(0, 63).c_str());
}

}  // namespace tarnik
