// connect_only PATH: connects to a local socket and ends. The floor for the start of a command.
#include <algorithm>
#include <string_view>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

int main(int argc, char** argv) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string_view path = argc > 1 ? argv[1] : "";
    if (path.empty() || path.size() >= sizeof address.sun_path) return 2;
    std::copy(path.begin(), path.end(), &address.sun_path[0]);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const int failed = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::close(socket);
    return failed == 0 ? 0 : 1;
}
