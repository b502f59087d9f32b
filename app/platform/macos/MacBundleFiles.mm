#include <cerrno>
#include <cstdio>

#import <Foundation/Foundation.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "app/platform/macos/CocoaText.h"
#include "app/platform/macos/MacOperations.h"

namespace tarnik {

namespace {

// Returns the errno value that Foundation's error wraps, or EIO if it wraps none.
SystemError fileError(const std::string& call, NSError* error) {
    for (; error; error = error.userInfo[NSUnderlyingErrorKey]) {
        if ([error.domain isEqualToString:NSPOSIXErrorDomain]) return {call, static_cast<int>(error.code)};
    }
    return {call, EIO};
}

bool canWrite(const std::string& folder) {
    return ::access(folder.c_str(), W_OK | X_OK) == 0;
}

BundleFiles::Done copy(const std::string& from, const std::string& to) {
    @autoreleasepool {
        NSError* error = nil;
        if ([[NSFileManager defaultManager] copyItemAtPath:cocoaText(from) toPath:cocoaText(to) error:&error])
            return {};
        return std::unexpected(fileError("copy " + from, error));
    }
}

BundleFiles::Done exchange(const std::string& one, const std::string& other) {
    if (::renamex_np(one.c_str(), other.c_str(), RENAME_SWAP) == 0) return {};
    return std::unexpected(SystemError::last("renamex_np", other));
}

BundleFiles::Done moveIntoEmptyPlace(const std::string& from, const std::string& to) {
    if (::renamex_np(from.c_str(), to.c_str(), RENAME_EXCL) == 0) return {};
    return std::unexpected(SystemError::last("renamex_np", to));
}

BundleFiles::Done trash(const std::string& path) {
    @autoreleasepool {
        NSError* error = nil;
        if ([[NSFileManager defaultManager] trashItemAtURL:[NSURL fileURLWithPath:cocoaText(path)]
                                          resultingItemURL:nil
                                                     error:&error])
            return {};
        return std::unexpected(fileError("trash " + path, error));
    }
}

std::expected<bool, SystemError> clearQuarantine(const std::string& entry) {
    if (::removexattr(entry.c_str(), "com.apple.quarantine", XATTR_NOFOLLOW) == 0) return true;
    if (errno == ENOATTR) return false;
    return std::unexpected(SystemError::last("removexattr", entry));
}

}  // namespace

BundleFiles macBundleFiles() {
    return {.canWrite = canWrite,
            .copy = copy,
            .exchange = exchange,
            .moveIntoEmptyPlace = moveIntoEmptyPlace,
            .trash = trash,
            .clearQuarantine = clearQuarantine};
}

}  // namespace tarnik
