#include <crt_externs.h>
#include <dlfcn.h>

#include "app/platform/CfText.h"
#include "app/platform/macos/MacOperations.h"

namespace tarnik {

namespace {

using IsTranslocated = Boolean (*)(CFURLRef path, bool* isTranslocated, CFErrorRef* error);
using CreateOriginalPath = CFURLRef (*)(CFURLRef path, CFErrorRef* error);

// Security.framework exports these functions without a header. Returns null if the system lacks the function.
template <class Function>
Function find(const char* name) {
    void* library = ::dlopen("/System/Library/Frameworks/Security.framework/Security", RTLD_LAZY);
    return library ? reinterpret_cast<Function>(::dlsym(library, name)) : nullptr;
}

// Returns the arguments of this process without the program's name.
std::vector<std::string> arguments() {
    char** all = *::_NSGetArgv();
    const int count = *::_NSGetArgc();
    return count > 1 ? std::vector<std::string>(all + 1, all + count) : std::vector<std::string>();
}

OwnCopy ownCopy(const std::string& path) {
    OwnCopy copy{.bundlePath = path, .arguments = arguments()};
    const auto bundle = CfText::folderURL(path);
    const auto isTranslocated = find<IsTranslocated>("SecTranslocateIsTranslocatedURL");
    if (!bundle || !isTranslocated) return copy;
    if (!isTranslocated(bundle.get(), &copy.isTranslocated, nullptr)) copy.isTranslocated = false;
    if (!copy.isTranslocated) return copy;

    const auto create = find<CreateOriginalPath>("SecTranslocateCreateOriginalPathForURL");
    const CfOwner original(create ? create(bundle.get(), nullptr) : nullptr);
    copy.originalPath = CfText::path(original.get());
    return copy;
}

}  // namespace

BundleOperations macBundles(const std::optional<std::string>& ownBundle) {
    if (!ownBundle) return {};
    return {.ownCopy = [bundle = *ownBundle] { return ownCopy(bundle); },
            .signatures = macSignatures(),
            .files = macBundleFiles(),
            .others = macCopies()};
}

}  // namespace tarnik
