#include "app/control/ControlServer.h"

#include <filesystem>

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include "app/control/ControlClient.h"
#include "app/control/ControlFolder.h"
#include "app/control/LocalSocket.h"
#include "tests/support/Eventually.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;
using Kind = ControlRequest::Kind;
using Failure = ControlClient::Failure;
using Position = ControlAnswer::Position;

const std::string statusLine = "{\"version\":1,\"id\":7,\"request\":\"status\"}\n";

// A server whose handlers answer at once: `status` with {}, `watch` with a stream that stays open.
class Served {
public:
    explicit Served(ControlLimits limits = {}) {
        auto started = ControlServer::start(
            {folder.path() + "/a"},
            {.onRequest = [this](auto client, const auto& request) { answer(client, request); },
             .onClosed = [this](auto) { ++closed; }},
            limits);
        if (started) server = *std::move(started);
        serving = server.get();
    }

    ControlClient client() const { return *ControlClient::connect({folder.path() + "/a"}); }
    UniqueFd socket() const { return *LocalSocket::connect(server->path()); }

    const TemporaryFolder folder;
    std::unique_ptr<ControlServer> server;
    std::atomic<ControlServer*> serving = nullptr;  // for its thread
    std::atomic<int> asked = 0;
    std::atomic<int> closed = 0;
    std::atomic<ControlServer::Client> last = 0;
    std::atomic<bool> answersLater = false;

private:
    void answer(ControlServer::Client client, const ControlRequest& request) {
        last = client;
        ++asked;
        if (answersLater) return;
        serving.load()->answer(client, request.id, "{}",
                               request.kind == Kind::watch ? Position::update : Position::last);
    }
};

// Reads until the server closes the connection. Returns all that it sent, or std::nullopt after a time-out.
std::optional<std::string> readToEnd(const UniqueFd& socket) {
    std::string all;
    std::array<char, 4096> buffer{};
    for (pollfd entry{socket.get(), POLLIN, 0}; ::poll(&entry, 1, 10'000) > 0;) {
        const auto count = ::recv(socket.get(), buffer.data(), buffer.size(), 0);
        if (count <= 0) return all;
        all.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return std::nullopt;
}

mode_t modeOf(const std::string& path) {
    struct stat found{};
    return ::stat(path.c_str(), &found) == 0 ? found.st_mode & 07777U : 0;
}

TEST(ControlServer, answersAndRemovesItsSocket) {
    Served f;
    const std::string path = f.server->path();
    EXPECT_EQ(modeOf(f.folder.path() + "/a"), 0700U);
    EXPECT_EQ(modeOf(path), 0600U);
    for (int i = 0; i < 2; ++i) {
        auto client = f.client();
        const auto answer = client.ask({.kind = Kind::status});
        ASSERT_TRUE(answer);
        EXPECT_TRUE(std::get<Json>(answer->content).isObject());
    }
    auto client = f.client();
    f.server.reset();
    EXPECT_EQ(client.receive().error(), Failure::ended);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(ControlClient::connect({f.folder.path()}).error(), Failure::notRunning);
}

TEST(ControlServer, replacesOnlyADeadSocketOfItsOwn) {
    using Reason = ControlListener::Failure::Reason;
    const TemporaryFolder folder;
    const std::string path = ControlFolder::socketPath(folder.path());
    const auto reason = [&] {
        const auto opened = ControlListener::open({folder.path()});
        return opened ? std::nullopt : std::optional(opened.error().reason);
    };
    // Listens without the lock on the folder, as on a file system without locks.
    const auto address = LocalSocket::address(path);
    UniqueFd live = LocalSocket::open();
    ASSERT_EQ(::bind(live.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address), 0);
    ASSERT_EQ(::listen(live.get(), 1), 0);
    EXPECT_EQ(reason(), Reason::inUse);
    EXPECT_TRUE(std::filesystem::exists(path));
    live.reset();
    EXPECT_EQ(reason(), std::nullopt) << "the socket is dead";
    EXPECT_FALSE(std::filesystem::exists(path));

    const auto first = ControlListener::open({folder.path()});
    ASSERT_TRUE(first);
    std::filesystem::remove(path);
    EXPECT_EQ(reason(), Reason::inUse) << "the folder is locked";

    const TemporaryFolder other;
    const std::string replaced = ControlFolder::socketPath(other.path());
    {
        const auto opened = ControlListener::open({other.path()});
        ASSERT_TRUE(opened);
        std::filesystem::remove(replaced);
        other.write(ControlFolder::socketName, "theirs");
    }
    EXPECT_TRUE(std::filesystem::exists(replaced));
}

TEST(ControlServer, changesNoForeignFileAndFollowsNoLink) {
    using Reason = ControlListener::Failure::Reason;
    const TemporaryFolder folder;
    const std::string real = folder.path() + "/real";
    const std::string path = ControlFolder::socketPath(real);
    folder.write(std::string("real/") + ControlFolder::socketName, "theirs");
    const auto open = [&](const std::string& in) { return ControlListener::open({in}); };
    EXPECT_EQ(open(real).error().reason, Reason::foreignFile);
    EXPECT_EQ(folder.read(std::string("real/") + ControlFolder::socketName), "theirs");
    std::filesystem::remove(path);
    std::filesystem::create_symlink(folder.path() + "/elsewhere", path);
    EXPECT_EQ(open(real).error().reason, Reason::foreignFile);
    std::filesystem::create_directory_symlink(real, folder.path() + "/linked");
    EXPECT_EQ(open(folder.path() + "/linked").error().reason, Reason::noPrivateFolder);

    const std::string tooLong = folder.path() + "/" + std::string(LocalSocket::pathLimit, 'x');
    EXPECT_EQ(open(tooLong).error().reason, Reason::pathTooLong);
    EXPECT_FALSE(std::filesystem::exists(tooLong));
    EXPECT_TRUE(ControlListener::open({tooLong, folder.path() + "/second"}));
}

// The modes of the folder and of the socket keep other users out too.
TEST(ControlServer, disconnectsProgramsOfOtherUsers) {
    if (::geteuid() != 0) GTEST_SKIP() << "only the superuser can become another user";
    const Served f;
    for (const auto& path : {f.folder.path(), f.folder.path() + "/a", f.server->path()})
        ASSERT_EQ(::chmod(path.c_str(), 0777), 0);
    const auto address = *LocalSocket::address(f.server->path());
    const pid_t other = ::fork();
    if (other == 0) {
        const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
        const bool connected =
            ::setuid(4711) == 0 &&
            ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
        pollfd entry{socket, POLLIN, 0};
        char byte = 0;
        ::_exit(connected && ::poll(&entry, 1, 10'000) == 1 && ::read(socket, &byte, 1) == 0 ? 0 : 1);
    }
    int status = -1;
    EXPECT_EQ(::waitpid(other, &status, 0), other);
    EXPECT_EQ(status, 0) << "the connection stayed open";
}

TEST(ControlServer, refusesEachMalformedLineAndGoesOn) {
    Served f;
    const auto socket = f.socket();
    LocalSocket::send(socket.get(),
                      "nonsense\n{\"version\":2,\"id\":5,\"request\":\"status\"}\n" + statusLine);
    ::shutdown(socket.get(), SHUT_WR);
    const auto all = readToEnd(socket).value_or("");
    EXPECT_NE(all.find(R"("id":0,"error":{"code":"malformed")"), std::string::npos) << all;
    EXPECT_NE(all.find(R"("id":5,"error":{"code":"version")"), std::string::npos) << all;
    EXPECT_NE(all.find(R"("id":7,"result":{})"), std::string::npos) << "a half-closed client gets its answer";

    const auto streaming = f.socket();
    LocalSocket::send(streaming.get(), "{\"version\":1,\"id\":7,\"request\":\"watch\"}\n" + statusLine);
    const auto answers = readToEnd(streaming).value_or("");
    EXPECT_NE(answers.find(R"("code":"malformed")"), std::string::npos) << "the id of the stream";
}

TEST(ControlServer, boundsARequestWithoutAnEnd) {
    Served f;
    const auto socket = f.socket();
    const std::string flood(1 << 20, 'x');
    for (std::size_t sent = 0; sent < flood.size();) {
        pollfd entry{socket.get(), POLLOUT, 0};
        if (::poll(&entry, 1, 10'000) <= 0) break;
        const auto count = LocalSocket::send(socket.get(), std::string_view(flood).substr(sent));
        if (count < 0 && errno != EAGAIN) break;
        sent += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    EXPECT_TRUE(readToEnd(socket));
    EXPECT_TRUE(f.client().ask({.kind = Kind::status}));
}

TEST(ControlServer, passesOnOneRequestOfAClientAtATime) {
    Served f;
    f.answersLater = true;
    const auto socket = f.socket();
    std::string flood;
    for (int i = 0; i < 100; ++i) flood += statusLine;
    LocalSocket::send(socket.get(), flood);
    ASSERT_TRUE(eventually([&] { return f.asked == 1; }));
    f.answersLater = false;
    EXPECT_TRUE(f.client().ask({.kind = Kind::status})) << "another client isn't delayed";
    EXPECT_EQ(f.asked, 2);
    f.server->answer(1, 7, "{}");
    EXPECT_TRUE(eventually([&] { return f.asked == 101; }));
}

TEST(ControlServer, closesClientsThatAreTooSlow) {
    Served impatient({.request = 50ms});
    const auto silent = impatient.socket();
    const auto slowWriter = impatient.socket();
    LocalSocket::send(slowWriter.get(), statusLine.substr(0, 9));
    EXPECT_EQ(readToEnd(silent), "");
    EXPECT_EQ(readToEnd(slowWriter), "");
    EXPECT_EQ(impatient.closed, 0) << "they have asked nothing";

    Served f({.answer = 50ms});
    auto watcher = f.client();
    const auto id = watcher.send({.kind = Kind::watch});
    ASSERT_TRUE(id && watcher.receive());
    EXPECT_EQ(watcher.receive(0.2s).error(), Failure::timedOut) << "a stream may be silent";

    const std::string big = R"({"text":")" + std::string(60'000, 'x') + R"("})";
    EXPECT_TRUE(eventually([&] {
        f.server->answer(f.last, *id, big, Position::update);
        return f.closed == 1;
    })) << "it reads nothing";
}

TEST(ControlServer, aStreamGetsTheLatestUpdateAndItsEnd) {
    Served f;
    auto watcher = f.client();
    const auto id = watcher.send({.kind = Kind::watch});
    ASSERT_TRUE(id && watcher.receive());
    for (int i = 1; i <= 1000; ++i)
        f.server->answer(f.last, *id, R"({"n":)" + std::to_string(i) + "}", Position::update);
    std::int64_t latest = 0;
    while (latest < 1000) {
        const auto update = watcher.receive();
        ASSERT_TRUE(update);
        const auto n = std::get<Json>(update->content).member("n")->asInteger().value_or(0);
        EXPECT_GT(n, latest);
        latest = n;
    }
    f.server->answer(f.last, *id, "{}");
    EXPECT_EQ(watcher.receive()->position, Position::last);
    EXPECT_TRUE(watcher.ask({.kind = Kind::status})) << "the connection is still open";
}

TEST(ControlServer, acceptsSixteenClients) {
    Served f;
    std::vector<ControlClient> clients;
    for (std::size_t i = 0; i < ControlClients::maxClients; ++i) {
        clients.push_back(f.client());
        ASSERT_TRUE(clients.back().ask({.kind = Kind::status}));
    }
    const auto refused = f.client().receive();
    ASSERT_TRUE(refused);
    EXPECT_EQ(std::get<ControlError>(refused->content).code, ControlErrors::tooMany);
    clients.pop_back();
    ASSERT_TRUE(eventually([&] { return f.closed == 1; }));
    EXPECT_TRUE(f.client().ask({.kind = Kind::status}));
}

}  // namespace
}  // namespace tarnik
