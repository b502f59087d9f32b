#include "app/platform/linux/SystemLogSocket.h"

#include <algorithm>
#include <array>
#include <regex>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "tests/support/TemporaryFolder.h"

namespace tarnik {

TEST(SystemLogSocket, sendsOneLineAndNeverBlocks) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/log";
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    std::ranges::copy(path, &address.sun_path[0]);
    const UniqueFd reader(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(::bind(reader.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);

    const auto log = SystemLogSocket::channel(std::make_shared<SystemLogSocket>(path), "app");
    log("two\nlines" + std::string(5000, 'x'));
    for (int i = 0; i < 5000; ++i) log("more");  // exceeds the socket's queue
    std::string line(4096, '\0');
    const ssize_t size = ::recv(reader.get(), line.data(), line.size(), 0);
    ASSERT_GT(size, 0);
    line.resize(static_cast<std::size_t>(size));
    const std::regex form("<14>[A-Z][a-z]{2} [ 1-3][0-9] [0-9:]{8} tarnik\\[[0-9]+\\]: app: two lines.*");
    EXPECT_TRUE(std::regex_match(line.substr(0, 60), form)) << line;
    EXPECT_LT(line.size(), 2100U);

    SystemLogSocket::channel(std::make_shared<SystemLogSocket>("/nowhere/log"), "app")("no socket");
}

}  // namespace tarnik
