#pragma once

#include <cstddef>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <sys/types.h>
#include <unistd.h>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

// A file system call that failed.
struct FileError {
    std::string call;  // with its subject: "mkdir /x"
    int code = 0;      // an errno value

    // Of a call that has just left its errno.
    static FileError last(const char* call, const std::string& path);
    bool operator==(const FileError&) const = default;
};

// "mkdir /x failed: Permission denied"
std::string describe(const FileError& error);

// Makes the folder and those above it that are missing, each with exactly `mode`, whatever the umask and the
// parent say. A folder that is already there (by a link too) is left as it is.
std::expected<void, FileError> createFolders(const std::string& path, mode_t mode);

// Puts the bytes into the file, in place of what it held. A new file gets `mode`, less the umask. Refuses
// whatever isn't a regular file, a link or a pipe in its place too, without waiting for anybody.
std::expected<void, FileError> writeFile(const std::string& path, std::string_view bytes, mode_t mode);

// All of a regular file that holds at most `maxBytes`; none for anything else. Follows links, waits for
// nobody.
std::optional<std::string> readFile(const std::string& path, std::size_t maxBytes);

// A regular file, open for reading; closed when it is anything else. Follows links, waits for nobody.
UniqueFd openRegularFile(const std::string& path);

// Writes the bytes in as many calls as it takes. Returns how many were written: fewer than given when a call
// fails or accepts nothing (EIO), with errno set. `write` is write(2).
using WriteCall = ssize_t (*)(int, const void*, std::size_t);
std::size_t writeAll(int fd, std::string_view bytes, WriteCall write = ::write);

// Returns how much was read: less than the buffer holds only at the end of the file. std::nullopt with errno
// set on failure.
std::optional<std::size_t> readInto(const UniqueFd& file, std::span<char> buffer);

// These follow links, and answer no when the system won't tell.
bool exists(const std::string& path);
bool isFolder(const std::string& path);
bool isExecutableFile(const std::string& path);  // a regular file that this user may run
bool holdsEntries(const std::string& folder, std::string_view otherThan = {});

// These ask about the entry itself.
bool isLink(const std::string& path);
bool isRegularFile(const std::string& path);

}  // namespace tarnik
