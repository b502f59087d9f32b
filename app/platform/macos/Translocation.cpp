#include "app/platform/macos/Translocation.h"

#include <dlfcn.h>

#include "app/platform/macos/CfText.h"

namespace tarnik {

namespace {

using IsTranslocated = Boolean (*)(CFURLRef path, bool* isTranslocated, CFErrorRef* error);
using CreateOriginalPath = CFURLRef (*)(CFURLRef path, CFErrorRef* error);

// The system has these without a header; null when it has them no longer.
template <class Function>
Function find(const char* name) {
    void* library = ::dlopen("/System/Library/Frameworks/Security.framework/Security", RTLD_LAZY);
    return library ? reinterpret_cast<Function>(::dlsym(library, name)) : nullptr;
}

}  // namespace

Translocation Translocation::of(const std::string& bundlePath) {
    const auto bundle = CfText::folderURL(bundlePath);
    const auto isTranslocated = find<IsTranslocated>("SecTranslocateIsTranslocatedURL");
    bool is = false;
    if (!bundle || !isTranslocated || !isTranslocated(bundle.get(), &is, nullptr) || !is) return {};

    const auto create = find<CreateOriginalPath>("SecTranslocateCreateOriginalPathForURL");
    const CfOwner original(create ? create(bundle.get(), nullptr) : nullptr);
    return {.isTranslocated = true, .originalPath = CfText::path(original.get())};
}

}  // namespace tarnik
