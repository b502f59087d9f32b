#include "app/console/ServiceNotification.h"

#include <array>
#include <cstddef>
#include <cstring>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "core/foundation/UniqueFd.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

// A service manager at this address. Returns the first message that waits, or an empty text.
struct NotifySocket {
    UniqueFd socket{::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)};

    explicit NotifySocket(const std::string& address) {
        sockaddr_un own{.sun_family = AF_UNIX, .sun_path = {}};
        std::memcpy(own.sun_path, address.data(), address.size());
        if (address.starts_with('@')) own.sun_path[0] = '\0';
        const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + address.size());
        EXPECT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&own), length), 0);
    }
    std::string received() const {
        std::array<char, 64> bytes{};
        const auto count = ::recv(socket.get(), bytes.data(), bytes.size(), 0);
        return count > 0 ? std::string(bytes.data(), static_cast<std::size_t>(count)) : "";
    }
};

TEST(ServiceNotification, reachesAPathAndAnAbstractName) {
    const TemporaryFolder folder;
    for (const auto& address : {folder.path() + "/n", "@tarnik-test-" + std::to_string(::getpid())}) {
        const NotifySocket manager(address);
        ServiceNotification(address).ready();
        EXPECT_EQ(manager.received(), "READY=1") << address;
    }
    // Without a manager, or with one of another protocol, messages are lost.
    for (const std::string& address : {std::string(), std::string("vsock:2:1"), "/" + std::string(200, 'x')})
        ServiceNotification(address).stopping();
}

}  // namespace
}  // namespace tarnik
