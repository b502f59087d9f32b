#include "app/control/LocalSocket.h"

#include <algorithm>
#include <cerrno>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tarnik::LocalSocket {

std::optional<sockaddr_un> address(const std::string& path) {
    sockaddr_un address{};
    static_assert(sizeof address.sun_path >= pathLimit);
    if (path.size() >= pathLimit || path.contains('\0')) return std::nullopt;
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), &address.sun_path[0]);
    return address;
}

std::expected<UniqueFd, SystemError> connect(const std::string& path) {
    const auto place = address(path);
    if (!place) return std::unexpected(SystemError{.call = "connect " + path, .code = ENAMETOOLONG});
    UniqueFd socket = open();
    // A full queue fails with EAGAIN on Linux. A local socket never connects asynchronously.
    if (!socket || ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&*place), sizeof *place) != 0) {
        return std::unexpected(SystemError::last("connect", path));
    }
    return socket;
}

bool isSameUser(int socket) {
    return peerUser(socket) == ::geteuid();
}

}  // namespace tarnik::LocalSocket
