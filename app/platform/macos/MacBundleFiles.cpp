#include "app/platform/macos/MacBundleFiles.h"

#include <cerrno>
#include <cstdio>

#include <sys/xattr.h>
#include <unistd.h>

#include "app/platform/macos/FoundationFiles.h"

namespace tarnik {

namespace {

bool canWrite(const std::string& folder) {
    return ::access(folder.c_str(), W_OK | X_OK) == 0;
}

BundleFiles::Done exchange(const std::string& one, const std::string& other) {
    if (::renamex_np(one.c_str(), other.c_str(), RENAME_SWAP) == 0) return {};
    return std::unexpected(SystemError::last("renamex_np", other));
}

BundleFiles::Done moveIntoEmptyPlace(const std::string& from, const std::string& to) {
    if (::renamex_np(from.c_str(), to.c_str(), RENAME_EXCL) == 0) return {};
    return std::unexpected(SystemError::last("renamex_np", to));
}

std::expected<bool, SystemError> clearQuarantine(const std::string& entry) {
    if (::removexattr(entry.c_str(), "com.apple.quarantine", XATTR_NOFOLLOW) == 0) return true;
    if (errno == ENOATTR) return false;
    return std::unexpected(SystemError::last("removexattr", entry));
}

}  // namespace

BundleFiles macBundleFiles() {
    return {.canWrite = canWrite,
            .copy = FoundationFiles::copy,
            .exchange = exchange,
            .moveIntoEmptyPlace = moveIntoEmptyPlace,
            .trash = FoundationFiles::trash,
            .clearQuarantine = clearQuarantine};
}

}  // namespace tarnik
