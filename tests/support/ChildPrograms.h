#pragma once

#include <string>

#include <dlfcn.h>

namespace tarnik {

// The path of one of the tiny programs in devkit/children.
std::string childProgram(const std::string& name);

// Whether this program runs under a sanitizer, where children cost many times more.
inline bool isSanitized() {
    return ::dlsym(RTLD_DEFAULT, "__asan_init") != nullptr || ::dlsym(RTLD_DEFAULT, "__tsan_init") != nullptr;
}

}  // namespace tarnik
