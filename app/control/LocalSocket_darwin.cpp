#include "app/control/LocalSocket.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tarnik::LocalSocket {

namespace {

UniqueFd prepared(UniqueFd socket) {
    const int on = 1;
    if (!socket || ::fcntl(socket.get(), F_SETFD, FD_CLOEXEC) != 0 ||
        ::fcntl(socket.get(), F_SETFL, O_NONBLOCK) != 0 ||
        ::setsockopt(socket.get(), SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on) != 0) {
        return {};
    }
    return socket;
}

}  // namespace

UniqueFd open() {
    return prepared(UniqueFd(::socket(AF_UNIX, SOCK_STREAM, 0)));
}

UniqueFd accept(int listening) {
    return prepared(UniqueFd(::accept(listening, nullptr, nullptr)));
}

ssize_t send(int socket, std::string_view bytes) {
    return ::send(socket, bytes.data(), bytes.size(), 0);
}

std::optional<uid_t> peerUser(int socket) {
    uid_t user = 0;
    gid_t group = 0;
    if (::getpeereid(socket, &user, &group) != 0) return std::nullopt;
    return user;
}

}  // namespace tarnik::LocalSocket
