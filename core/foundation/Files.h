#pragma once

#include <cstddef>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <sys/types.h>
#include <unistd.h>

#include "core/foundation/SystemError.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Creates the folder and its missing parents, each with exactly `mode`, whatever the umask and the parent's
// mode are. An existing folder, or a link to one, is not changed.
std::expected<void, SystemError> createFolders(const std::string& path, mode_t mode);

// Replaces the contents of the file. A new file gets `mode`, less the umask. Fails for a link and for
// anything but a regular file. Never blocks on a pipe.
std::expected<void, SystemError> writeFile(const std::string& path, std::string_view bytes, mode_t mode);

// Returns the contents of a regular file. Returns std::nullopt on failure, or if the contents exceed
// `maxBytes`. Follows links. Never blocks on a pipe.
std::optional<std::string> readFile(const std::string& path, std::size_t maxBytes);

// Opens a regular file for reading. Returns an empty UniqueFd on failure, and for anything else. Follows
// links. Never blocks on a pipe.
UniqueFd openRegularFile(const std::string& path);

// Writes the bytes in as many calls as needed. Returns the number of bytes written. If a call fails or writes
// 0 bytes (EIO), the number is lower than bytes.size() and errno is set. `write` works as write(2).
using WriteCall = ssize_t (*)(int, const void*, std::size_t);
std::size_t writeAll(int fd, std::string_view bytes, WriteCall write = ::write);

// Reads until the buffer is full or the file ends. Returns the number of bytes read, or std::nullopt with
// errno set on failure.
std::optional<std::size_t> readInto(const UniqueFd& file, std::span<char> buffer);

// Returns the rest of the file, or std::nullopt on failure or if the rest exceeds `maxBytes`.
std::optional<std::string> readRest(const UniqueFd& file, std::size_t maxBytes);

// Removes the folder or file with all its contents, including folders that deny access to their owner. Does
// not follow links at or below `path`. Returns true if the path no longer exists. Call this only for folders
// that no other user can write to.
bool removeTree(const std::string& path);

// These functions follow links. They return false on any failure.
bool exists(const std::string& path);
bool isFolder(const std::string& path);
bool isExecutableFile(const std::string& path);  // a regular file that this user may run
bool holdsEntries(const std::string& folder, std::string_view otherThan = {});

// These functions don't follow a link in the last path component. They return false on any failure.
bool isLink(const std::string& path);
bool isRegularFile(const std::string& path);

}  // namespace tarnik
