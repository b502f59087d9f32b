#include "core/foundation/ThreadName.h"

#include <pthread.h>

namespace tarnik {

// On Darwin pthread_setname_np(3) names only the calling thread, with up to 63 bytes.
void setThreadName(const std::string& name) {
    ::pthread_setname_np(name.substr(0, 63).c_str());
}

}  // namespace tarnik
