#pragma once

#include <cstddef>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "core/foundation/SystemError.h"
#include "core/foundation/UniqueFd.h"

struct sockaddr_un;

// Stream sockets between programs of this machine. All descriptors are close-on-exec and don't block, and no
// call raises SIGPIPE.
namespace tarnik::LocalSocket {

inline constexpr std::size_t pathLimit = 104;  // Darwin's limit with the final NUL; Linux's is higher

// Sets errno and returns an empty owner on failure.
UniqueFd open();
UniqueFd accept(int listening);

// Returns std::nullopt if the path is too long or contains a NUL.
std::optional<sockaddr_un> address(const std::string& path);

// Connects a new socket. The error is ECONNREFUSED if no program listens on the socket, and ENOENT if
// the path doesn't exist.
std::expected<UniqueFd, SystemError> connect(const std::string& path);

// Works as write(2).
ssize_t send(int socket, std::string_view bytes);

// Returns the user of the program at the other end, or std::nullopt if it is unknown.
std::optional<uid_t> peerUser(int socket);

// Returns true if the program at the other end belongs to this user.
bool isSameUser(int socket);

}  // namespace tarnik::LocalSocket
