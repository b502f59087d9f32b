#include "app/platform/macos/FoundationFiles.h"

#include <cerrno>

#import <Foundation/Foundation.h>

#include "app/platform/macos/CocoaText.h"

namespace tarnik::FoundationFiles {

namespace {

// Foundation words its own errors around the system's number, where there was one.
SystemError fileError(const std::string& call, NSError* error) {
    for (; error; error = error.userInfo[NSUnderlyingErrorKey]) {
        if ([error.domain isEqualToString:NSPOSIXErrorDomain]) return {call, static_cast<int>(error.code)};
    }
    return {call, EIO};
}

}  // namespace

std::expected<void, SystemError> copy(const std::string& from, const std::string& to) {
    @autoreleasepool {
        NSError* error = nil;
        if ([[NSFileManager defaultManager] copyItemAtPath:cocoaText(from) toPath:cocoaText(to) error:&error])
            return {};
        return std::unexpected(fileError("copy " + from, error));
    }
}

std::expected<void, SystemError> trash(const std::string& path) {
    @autoreleasepool {
        NSError* error = nil;
        if ([[NSFileManager defaultManager] trashItemAtURL:[NSURL fileURLWithPath:cocoaText(path)]
                                          resultingItemURL:nil
                                                     error:&error])
            return {};
        return std::unexpected(fileError("trash " + path, error));
    }
}

}  // namespace tarnik::FoundationFiles
