#include "app/platform/linux/SystemLogSocket.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

// Returns the current local time in the format of syslog, independent of the locale: "Jan  2 03:04:05".
std::string timestamp() {
    constexpr std::array months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    std::array<char, 32> rest{};
    const std::size_t size = std::strftime(rest.data(), rest.size(), " %e %H:%M:%S", &local);
    return months.at(static_cast<std::size_t>(local.tm_mon)) + std::string(rest.data(), size);
}

}  // namespace

SystemLogSocket::SystemLogSocket(std::string path)
    : path_(std::move(path)), socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}

void SystemLogSocket::write(const std::string& category, const std::string& message) const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (!socket_ || path_.size() >= sizeof(address.sun_path)) return;
    std::ranges::copy(path_, &address.sun_path[0]);
    const std::string line = "<" + std::to_string(LOG_USER | LOG_INFO) + ">" + timestamp() + " tarnik[" +
                             std::to_string(::getpid()) +
                             "]: " + sanitizedLine(category + ": " + message, maxLineLength);
    const auto* to = reinterpret_cast<const sockaddr*>(&address);
    (void)::sendto(socket_.get(), line.data(), line.size(), MSG_DONTWAIT | MSG_NOSIGNAL, to, sizeof(address));
}

SystemLog SystemLogSocket::channel(std::shared_ptr<const SystemLogSocket> socket,
                                   const std::string& category) {
    return [socket = std::move(socket), category](const std::string& message) {
        socket->write(category, message);
    };
}

}  // namespace tarnik
