#include "app/control/LocalSocket.h"

#include <sys/socket.h>
#include <sys/un.h>

namespace tarnik::LocalSocket {

UniqueFd open() {
    return UniqueFd(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

UniqueFd accept(int listening) {
    return UniqueFd(::accept4(listening, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
}

ssize_t send(int socket, std::string_view bytes) {
    return ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

std::optional<uid_t> peerUser(int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return std::nullopt;
    return peer.uid;
}

}  // namespace tarnik::LocalSocket
