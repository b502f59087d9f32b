#include "core/foundation/SharedLibrary.h"

#include <dlfcn.h>

namespace tarnik {

SharedLibrary::SharedLibrary(const std::string& file)
    : handle_(::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) noteFailure();
}

void* SharedLibrary::symbol(const char* name) {
    if (handle_ == nullptr) return nullptr;
    void* const found = ::dlsym(handle_, name);
    if (found == nullptr) noteFailure();
    return found;
}

// dlerror(3) returns the calling thread's last failure, and clears it.
void SharedLibrary::noteFailure() {
    const char* const message = ::dlerror();
    if (!failure_) failure_ = message != nullptr ? message : "a library can't be loaded";
}

}  // namespace tarnik
