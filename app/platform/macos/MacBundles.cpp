#include "app/platform/macos/MacBundles.h"

#include <crt_externs.h>

#include "app/platform/macos/MacBundleFiles.h"
#include "app/platform/macos/MacCopies.h"
#include "app/platform/macos/MacSignatures.h"
#include "app/platform/macos/Translocation.h"

namespace tarnik {

namespace {

// Without the name of the program.
std::vector<std::string> arguments() {
    char** all = *::_NSGetArgv();
    const int count = *::_NSGetArgc();
    return count > 1 ? std::vector<std::string>(all + 1, all + count) : std::vector<std::string>();
}

OwnCopy ownCopy(const std::string& bundle) {
    auto translocation = Translocation::of(bundle);
    return {.bundlePath = bundle,
            .isTranslocated = translocation.isTranslocated,
            .originalPath = std::move(translocation.originalPath),
            .arguments = arguments()};
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
