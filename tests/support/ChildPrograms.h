#pragma once

#include <string>

#include <dlfcn.h>

namespace tarnik {

// Returns the path of a program of devkit/children.
std::string childProgram(const std::string& name);

// Returns true under a sanitizer, where starting a child is many times slower.
inline bool isSanitized() {
    return ::dlsym(RTLD_DEFAULT, "__asan_init") != nullptr || ::dlsym(RTLD_DEFAULT, "__tsan_init") != nullptr;
}

}  // namespace tarnik
