#include "app/console/ServiceNotification.h"

#include <cstddef>
#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

void ServiceNotification::send(std::string_view assignment) const {
    sockaddr_un to{};
    to.sun_family = AF_UNIX;
    const bool isAbstract = address_.starts_with('@');
    if ((!isAbstract && !address_.starts_with('/')) || address_.size() >= sizeof to.sun_path) return;
    std::memcpy(to.sun_path, address_.data(), address_.size());
    if (isAbstract) to.sun_path[0] = '\0';
    const UniqueFd socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket) return;
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + address_.size());
    ::sendto(socket.get(), assignment.data(), assignment.size(), MSG_NOSIGNAL,
             reinterpret_cast<const sockaddr*>(&to), length);
}

}  // namespace tarnik
