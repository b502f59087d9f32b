#include "core/foundation/Http.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include <gtest/gtest.h>

#include "core/foundation/Files.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {

namespace {

using Kind = HttpError::Kind;
using Client = LoopbackServer::Client;

const HttpOptions strict{.bodyBytes = 100'000, .timeout = Seconds(0.1), .floorBytesPerSecond = 10'000};
const std::string ok = "HTTP/1.1 200 OK\r\n";

std::string measured(const std::string& body, std::size_t length) {
    return ok + "Content-Length: " + std::to_string(length) + "\r\n\r\n" + body;
}

std::string redirect(const std::string& to) {
    return "HTTP/1.1 302 Found\r\nContent-Length: 0\r\nLocation: " + to + "\r\n\r\n";
}

std::size_t entries(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

// Sends `piece` repeatedly, at intervals of `apart`.
LoopbackServer::Script endless(const std::string& head, const std::string& piece, Seconds apart = {}) {
    return [=](const Client& client, const std::string&) {
        if (!client.send(head)) return;
        while (client.send(piece) && !client.disconnects(apart)) {}
    };
}

LoopbackServer::Script once(const std::string& answer) {
    return [=](const Client& client, const std::string&) { client.send(answer); };
}

// Ignores the proxies of the environment.
class HttpTest : public testing::Test {
protected:
    HttpTest() {
        for (const char* name : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
            ::unsetenv(name);
    }

    // Returns the error of a download, which must not change the destination and its folder.
    static HttpError failureOf(const std::string& url, const HttpOptions& options = strict) {
        const TemporaryFolder folder;
        const auto done = Http::download(url, folder.write("file", "old"), options);
        EXPECT_EQ(folder.read("file"), "old");
        EXPECT_EQ(entries(folder), 1U);
        return done ? HttpError{.text = "no failure"} : done.error();
    }
};

TEST_F(HttpTest, failsWithoutACompleteBody) {
    const std::string big(200'000, 'x');
    const auto gushes = endless(measured("", 90'000), big.substr(0, 400), Seconds(0.06));
    const std::pair<const char*, LoopbackServer::Script> cases[] = {
        {"status 500", endless("HTTP/1.1 500 No\r\n\r\n", big)},
        {"status 201", once("HTTP/1.1 201 Made\r\nContent-Length: 1\r\n\r\nx")},
        {"empty answer", once(measured("", 0))},
        {"more than is allowed", endless(measured("", 100'001), "", Seconds(9))},
        {"more than is allowed", endless(ok + "\r\n", big)},
        {"header", endless(ok, "X: " + std::string(8000, 'x') + "\r\n")},
        {"ended before", once(measured("half", 8))},
        {"isn't HTTP", once("SSH-2.0-OpenSSH_9.2\r\n")},
        {"sent too slowly", endless(measured("half", 8), "", Seconds(9))},
        {"sent too slowly", endless(ok + "X: ", "x", Seconds(0.02))},
        {"sent too slowly", gushes},
    };
    for (const auto& [words, script] : cases) {
        const LoopbackServer server(script);
        const std::string failure = describe(failureOf(server.origin()));
        EXPECT_TRUE(failure.contains(words)) << words << ": " << failure;
    }
}

TEST_F(HttpTest, limitsBytesBeforeAndAfterDecoding) {
    const std::string head = ok + "Transfer-Encoding: deflate\r\n\r\n";
    // Decodes to megabytes of one letter.
    const std::string letters = "\x78\xda\xec\xc1\x01\x01" + std::string(3, '\0') +
                                "\x80\x90\xdb\xcd\xef\x08\x0a" + std::string(5000, '\0');
    const LoopbackServer bomb(once(head + letters));
    EXPECT_EQ(failureOf(bomb.origin()).kind, Kind::tooLarge);

    // An endless stream of empty blocks. Some versions of libcurl count them, others report no progress.
    const LoopbackServer hollow(endless(head + "\x78\x9c", std::string("\0\0\0\xff\xff", 5)));
    const HttpError failure = failureOf(hollow.origin());
    EXPECT_TRUE(failure.kind == Kind::tooLarge || failure.kind == Kind::stalled) << describe(failure);
}

TEST_F(HttpTest, acceptsASlowBodyAboveTheLimit) {
    const LoopbackServer server([](const Client& client, const std::string&) {
        client.send(measured("", 10'000));
        for (int i = 0; i < 10 && !client.disconnects(Seconds(0.03)); ++i)
            client.send(std::string(1000, 'x'));
    });
    EXPECT_EQ(Http::fetch(server.origin(), strict).value_or("").size(), 10'000U);
}

// The server accepts the connection and never answers the TLS handshake.
TEST_F(HttpTest, waitsForASilentServerUntilTheTimeout) {
    const LoopbackServer silent(once(""));
    const std::string url = "https://127.0.0.1" + silent.origin().substr(silent.origin().rfind(':'));
    const TimePoint start = steadyNow();
    EXPECT_EQ(failureOf(url).kind, Kind::stalled);
    const Seconds took = steadyNow() - start;
    EXPECT_TRUE(took >= strict.timeout && took < 50 * strict.timeout) << took.count();
}

TEST_F(HttpTest, followsFiveRedirectsToHttp) {
    // "/3" redirects to "/2", and so on to "/0".
    const LoopbackServer server([](const Client& client, const std::string& request) {
        const int left = std::stoi(request.substr(sizeof "GET /" - 1));
        EXPECT_TRUE(request.contains("\r\nCache-Control: no-cache\r\n")) << request;
        client.send(left > 0 ? redirect("/" + std::to_string(left - 1)) : measured("here", 4));
    });
    EXPECT_EQ(Http::fetch(server.origin() + "/5"), "here");
    EXPECT_EQ(failureOf(server.origin() + "/6").text, "too many redirects");
    EXPECT_EQ(failureOf(server.origin() + "/0" + std::string("\0x", 2)).text, "the address is broken");

    for (const std::string url : {"file:///etc/passwd", "ftp://127.0.0.1/"}) {
        const LoopbackServer leading(once(redirect(url)));
        for (const auto& from : {leading.origin(), url})
            EXPECT_EQ(failureOf(from).text, "the address is of a kind that isn't allowed") << from;
    }
}

TEST_F(HttpTest, verifiesTheCertificateAndItsName) {
    const LoopbackServer plain(once(measured("plain", 5)));
    const auto answer = [&](const Client& client, const std::string& request) {
        client.send(request.starts_with("GET /down") ? redirect(plain.origin()) : measured("safe", 4));
    };
    const LoopbackServer server(answer, LoopbackServer::Security::tls);
    const LoopbackServer round(once(redirect(server.origin() + "/down")));
    const TemporaryFolder folder;
    const HttpOptions patient{};  // loading the system's authorities takes time
    HttpOptions trusting;
    trusting.authorities = folder.write("authority.pem", server.certificate());

    EXPECT_EQ(Http::fetch(server.origin(), trusting), "safe");
    EXPECT_TRUE(failureOf(server.origin(), patient).text.contains("certificate"));
    EXPECT_EQ(failureOf(server.origin(), patient).kind, Kind::untrusted);
    const std::string otherName = "https://127.0.0.1" + server.origin().substr(server.origin().rfind(':'));
    EXPECT_TRUE(failureOf(otherName, trusting).text.contains("certificate"));
    for (const auto& down : {server.origin() + "/down", round.origin()})
        EXPECT_TRUE(failureOf(down, trusting).text.contains("isn't allowed")) << down;
}

TEST_F(HttpTest, namesTheCauseOfABrokenConnection) {
    const LoopbackServer proxy(once("HTTP/1.1 407 Login\r\nContent-Length: 0\r\n\r\n"));
    ::setenv("https_proxy", proxy.origin().c_str(), 1);
    EXPECT_EQ(failureOf("https://example.invalid", {}).kind, Kind::proxyLogin);
    ::unsetenv("https_proxy");
    EXPECT_EQ(failureOf("http://example.invalid", {}).kind, Kind::unresolved);
    EXPECT_EQ(failureOf("http://127.0.0.1:1", {}).kind, Kind::unreachable);
    const LoopbackServer old(once(measured("", 0)), LoopbackServer::Security::expiredTls);
    const TemporaryFolder folder;
    HttpOptions trusting;
    trusting.authorities = folder.path() + "/authority.pem";
    std::ofstream(trusting.authorities) << old.certificate();
    EXPECT_EQ(failureOf(old.origin(), trusting).kind, Kind::notValidNow);
}

// The first route is closed, and the second proxy serves the request. A connection ends the search.
TEST_F(HttpTest, triesTheRoutesUntilOneConnects) {
    std::string asked;
    const LoopbackServer proxy([&](const Client& client, const std::string& request) {
        asked = request.substr(0, request.find('\r'));
        client.send(request.contains("login") ? "HTTP/1.1 407 Login\r\nContent-Length: 0\r\n\r\n"
                                              : measured("here", 4));
    });
    ::setenv("no_proxy", "*", 1);  // the lookup has read it already
    HttpOptions options{.proxies = [&](const std::string& url) {
        if (url.contains("direct")) return ProxyRoutes{{}};
        return ProxyRoutes{{"http://127.0.0.1:1"}, {proxy.origin()}, {}};
    }};
    EXPECT_EQ(Http::fetch("http://example.invalid/x", options), "here");
    EXPECT_EQ(asked, "GET http://example.invalid/x HTTP/1.1");

    const auto login = failureOf("http://example.invalid/login", options);
    const auto name = proxy.origin().substr(sizeof "http://" - 1);
    EXPECT_EQ(login, (HttpError{.kind = Kind::proxyLogin, .proxy = name}));
    EXPECT_EQ(describe(login), "The proxy " + name + " requires a name and a password.");
    EXPECT_EQ(failureOf("https://login.invalid", options).kind, Kind::proxyLogin);

    ::setenv("http_proxy", proxy.origin().c_str(), 1);
    const auto direct = failureOf("http://direct.invalid", options);
    EXPECT_EQ(direct.kind, Kind::unresolved);
    EXPECT_EQ(direct.proxy, "");
    options.proxies = [](const auto&) { return ProxyRoutes{{"http://127.0.0.1:1"}, {"127.0.0.1:2"}}; };
    EXPECT_TRUE(describe(failureOf("http://127.0.0.1", options)).contains("proxy 127.0.0.1:2 failed"));
    options.proxies = [](const auto&) { return ProxyRoutes{{"http://me:sec ret@127.0.0.1:1"}}; };
    EXPECT_FALSE(describe(failureOf("http://127.0.0.1", options)).contains("sec"));
    ::unsetenv("http_proxy");
    ::unsetenv("no_proxy");
}

TEST_F(HttpTest, returnsTheDateOfTheServer) {
    const LoopbackServer server(
        once(ok + "Date: Sun, 06 Nov 1994 08:49:37 GMT\r\nContent-Length: 1\r\n\r\nx"));
    const auto answer = Http::ask(server.origin());
    ASSERT_TRUE(answer && answer->date);
    EXPECT_EQ(answer->date->time_since_epoch().count(), 784111777);
}

TEST_F(HttpTest, storesADownloadAndReportsProgress) {
    const std::string whole(4'000'000, 'x');
    const TemporaryFolder folder;
    const std::string destination = folder.path() + "/file";
    std::filesystem::create_symlink(folder.write("other", "old"), destination);
    const LoopbackServer server(once(measured(whole, whole.size())));
    std::vector<std::int64_t> reports;
    const auto report = [&](std::int64_t received, std::optional<std::int64_t> total) {
        EXPECT_EQ(total, 4'000'000);
        reports.push_back(received);
    };
    const TimePoint start = steadyNow();
    const HttpOptions exact{.bodyBytes = 4'000'000};
    EXPECT_TRUE(Http::download(server.origin(), destination, exact, report).has_value());
    const double most = 2 + Seconds(steadyNow() - start).count() * Http::maximumReportsPerSecond;

    EXPECT_EQ(folder.read("file"), whole);
    EXPECT_EQ(folder.read("other"), "old");
    EXPECT_EQ(std::filesystem::status(destination).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(entries(folder), 2U);
    EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end()));
    EXPECT_TRUE(reports.size() >= 2 && static_cast<double>(reports.size()) <= most) << reports.size();
    EXPECT_EQ(reports.back(), 4'000'000);
}

TEST_F(HttpTest, reportsAnUnwritableDestination) {
    const LoopbackServer server(once(measured("whole", 5)));
    for (const auto& [destination, code] : {std::pair("/tmp", EISDIR), {"/missing/file", ENOENT}}) {
        const auto done = Http::download(server.origin(), destination);
        EXPECT_EQ(done.error(), (HttpError{.kind = Kind::file, .code = code})) << destination;
    }
}

}  // namespace
}  // namespace tarnik
