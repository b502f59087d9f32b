#include "core/foundation/Http.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/LoopbackServer.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {

void PrintTo(const HttpError& error, std::ostream* out) {
    *out << describe(error);
}

namespace {

using Kind = HttpError::Kind;
using Client = LoopbackServer::Client;

const HttpOptions strict{.bodyBytes = 100'000,
                         .connectTimeout = Seconds(5),
                         .stallTimeout = Seconds(0.5),
                         .floorBytesPerSecond = 1024};
const std::string chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
const std::string unmeasured = "HTTP/1.1 200 OK\r\n\r\n";

std::string measured(const std::string& body, std::size_t length) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n" + body;
}

std::string redirect(const std::string& to) {
    return "HTTP/1.1 302 Found\r\nContent-Length: 0\r\nLocation: " + to + "\r\n\r\n";
}

std::string contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Sends `piece` again and again, `apart` from each other.
LoopbackServer::Script endless(const std::string& head, const std::string& piece, Seconds apart = {}) {
    return [=](const Client& client, const std::string&) {
        if (!client.send(head)) return;
        while (client.send(piece) && !client.leaves(apart)) {}
    };
}

LoopbackServer::Script once(const std::string& answer) {
    return [=](const Client& client, const std::string&) { client.send(answer); };
}

// No proxy of the tester's own comes between.
class HttpTest : public testing::Test {
protected:
    HttpTest() {
        for (const char* name : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"}) {
            ::unsetenv(name);
        }
    }

    // Of a download, which must leave the destination and its folder as they were.
    static HttpError failureOf(const std::string& url, const HttpOptions& options = strict) {
        const TemporaryFolder folder;
        const std::string destination = folder.path() + "/file";
        std::ofstream(destination) << "old";
        const auto done = Http::download(url, destination, options);
        EXPECT_TRUE(contents(destination) == "old") << contents(destination).substr(0, 200);
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
        return done ? HttpError{.text = "no failure"} : done.error();
    }
};

TEST_F(HttpTest, refusesWhatIsNotAWholeBody) {
    struct Case {
        const char* why;
        LoopbackServer::Script script;
        Kind kind;
        int status = 0;
    };
    const std::string big(200'000, 'x');
    const Case cases[] = {
        {"missing", once("HTTP/1.1 404 Not Found\r\nContent-Length: 2\r\n\r\nno"), Kind::badStatus, 404},
        {"an endless refusal", endless("HTTP/1.1 500 No\r\n\r\n", big), Kind::badStatus, 500},
        {"created, not found", once("HTTP/1.1 201 Created\r\nContent-Length: 1\r\n\r\nx"), Kind::badStatus,
         201},
        {"empty", once(measured("", 0)), Kind::badStatus, 200},
        {"a redirect to nowhere", once("HTTP/1.1 302 Found\r\nContent-Length: 0\r\n\r\n"), Kind::badStatus,
         302},
        {"one byte more, announced", endless(measured("", 100'001), "", Seconds(9)), Kind::tooLarge},
        {"without an end", endless(unmeasured, big), Kind::tooLarge},
        {"chunks without an end", endless(chunked, "3E8\r\n" + std::string(1000, 'x') + "\r\n"),
         Kind::tooLarge},
        {"a redirect without an end", endless("HTTP/1.1 302 Found\r\nLocation: /\r\n\r\n", big),
         Kind::tooLarge},
        {"headers without an end", endless("HTTP/1.1 200 OK\r\n", "X: " + std::string(8000, 'x') + "\r\n"),
         Kind::transport},
        {"cut short", once(measured("half", 8)), Kind::cutShort},
        {"chunks cut short", once(chunked + "8\r\nhalf"), Kind::cutShort},
        {"no answer at all", once(""), Kind::transport},
        {"another protocol", once("SSH-2.0-OpenSSH_9.2\r\n"), Kind::transport},
        {"silence", endless("", "", Seconds(9)), Kind::stalled},
        {"silence in the middle", endless(measured("half", 8), "", Seconds(9)), Kind::stalled},
        {"drops of headers", endless("HTTP/1.1 200 OK\r\nX: ", "x", Seconds(0.1)), Kind::stalled},
        {"drops", endless(measured("", 90'000), "drop", Seconds(0.1)), Kind::stalled},
        {"a gush now and then", endless(measured("", 90'000), std::string(400, 'x'), Seconds(0.45)),
         Kind::stalled},
    };
    for (const auto& c : cases) {
        const LoopbackServer server(c.script);
        const HttpError failure = failureOf(server.origin());
        EXPECT_EQ(failure.kind, c.kind) << c.why << ": " << describe(failure);
        EXPECT_EQ(failure.code, c.status) << c.why;
    }
}

TEST_F(HttpTest, countsOnTheLineAndUnpacked) {
    const std::string head = "HTTP/1.1 200 OK\r\nTransfer-Encoding: deflate\r\n\r\n";
    // Megabytes of one letter.
    const std::string letters = "\x78\xda\xec\xc1\x01\x01" + std::string(3, '\0') +
                                "\x80\x90\xdb\xcd\xef\x08\x0a" + std::string(5000, '\0');
    const LoopbackServer bomb(once(head + letters));
    EXPECT_EQ(failureOf(bomb.origin()).kind, Kind::tooLarge);

    // Blocks that hold nothing, without an end. Some versions of libcurl count them, the others see no
    // progress.
    const LoopbackServer hollow(endless(head + "\x78\x9c", std::string("\0\0\0\xff\xff", 5)));
    const HttpError failure = failureOf(hollow.origin());
    EXPECT_TRUE(failure.kind == Kind::tooLarge || failure.kind == Kind::stalled) << describe(failure);
}

TEST_F(HttpTest, takesABodyHoweverItIsMeasured) {
    const std::string whole(100'000, 'x');
    for (const auto& answer : {measured(whole, whole.size()), unmeasured + whole,
                               chunked + "186A0\r\n" + whole + "\r\n0\r\n\r\n"}) {
        const LoopbackServer server(once(answer));
        EXPECT_EQ(Http::fetch(server.origin(), strict), whole) << answer.substr(0, 60);
        HttpOptions smaller = strict;
        smaller.bodyBytes -= 1;
        EXPECT_EQ(Http::fetch(server.origin(), smaller).error().kind, Kind::tooLarge) << answer.substr(0, 60);
    }
}

TEST_F(HttpTest, waitsForWhatIsSlowButMoves) {
    const std::string piece(1000, 'x');
    const LoopbackServer server([&](const Client& client, const std::string&) {
        client.send(measured("", 10'000));
        for (int sent = 0; sent < 10; ++sent) {
            client.send(piece);
            client.leaves(Seconds(0.15));
        }
    });
    EXPECT_EQ(Http::fetch(server.origin(), strict).value_or("").size(), 10'000U);
}

TEST_F(HttpTest, followsAFewRedirectsToTheWeb) {
    // "/3" leads to "/2", and so on to "/0".
    const LoopbackServer server([](const Client& client, const std::string& request) {
        const int left = std::stoi(request.substr(sizeof "GET /" - 1));
        client.send(left > 0 ? redirect("/" + std::to_string(left - 1)) : measured("here", 4));
    });
    EXPECT_EQ(Http::fetch(server.origin() + "/5"), "here");
    EXPECT_EQ(failureOf(server.origin() + "/6").text, "too many redirects");

    const TemporaryFolder folder;
    std::ofstream(folder.path() + "/file") << "secret";
    const HttpError notAllowed{.text = "the address is of a kind that isn't allowed"};
    for (const std::string& url : {"file://" + folder.path() + "/file", std::string("ftp://127.0.0.1/")}) {
        const LoopbackServer leading(once(redirect(url)));
        EXPECT_EQ(failureOf(leading.origin()), notAllowed) << url;
        EXPECT_EQ(failureOf(url), notAllowed) << url;
    }
    EXPECT_EQ(failureOf(server.origin() + "/0" + std::string("\0x", 2)).text, "the address is broken");
}

TEST_F(HttpTest, trustsOnlyWhoProvesItsName) {
    const LoopbackServer plain(once(measured("plain", 5)));
    const LoopbackServer server(
        [&](const Client& client, const std::string& request) {
            if (request.starts_with("GET /down")) client.send(redirect(plain.origin()));
            client.send(measured("safe", 4));
        },
        LoopbackServer::Security::tls);
    const TemporaryFolder folder;
    HttpOptions trusting = strict;
    trusting.authorities = folder.path() + "/authority.pem";
    std::ofstream(trusting.authorities) << server.certificate();
    const std::string port = server.origin().substr(server.origin().rfind(':'));

    EXPECT_EQ(Http::fetch(server.origin(), trusting), "safe");
    EXPECT_NE(failureOf(server.origin()).text.find("certificate"), std::string::npos);
    EXPECT_NE(failureOf("https://127.0.0.1" + port, trusting).text.find("certificate"), std::string::npos);
    EXPECT_NE(failureOf(server.origin() + "/down", trusting).text.find("isn't allowed"), std::string::npos);
    const LoopbackServer round(once(redirect(server.origin() + "/down")));
    EXPECT_NE(failureOf(round.origin(), trusting).text.find("isn't allowed"), std::string::npos);
}

TEST_F(HttpTest, putsADownloadInPlaceAndReports) {
    const std::string whole(4'000'000, 'x');
    const TemporaryFolder folder;
    const std::string destination = folder.path() + "/file";
    std::ofstream(folder.path() + "/other") << "old";
    std::filesystem::create_symlink("other", destination);

    const LoopbackServer server(once(measured(whole, whole.size())));
    std::vector<std::int64_t> reports;
    const TimePoint start = steadyNow();
    const auto done = Http::download(server.origin(), destination, Http::downloadOptions(),
                                     [&](std::int64_t received, std::optional<std::int64_t> total) {
                                         EXPECT_EQ(total, 4'000'000);
                                         reports.push_back(received);
                                     });
    const double seconds = Seconds(steadyNow() - start).count();

    EXPECT_TRUE(done.has_value());
    EXPECT_EQ(contents(destination), whole);
    EXPECT_EQ(contents(folder.path() + "/other"), "old");
    EXPECT_EQ(std::filesystem::status(destination).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2);
    EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end()));
    EXPECT_GE(reports.size(), 2U);
    EXPECT_LE(static_cast<double>(reports.size()), 2 + seconds * Http::maximumReportsPerSecond);
    EXPECT_EQ(reports.back(), 4'000'000);
}

TEST_F(HttpTest, tellsWhenTheDestinationCannotBeWritten) {
    const LoopbackServer server(once(measured("whole", 5)));
    const TemporaryFolder folder;
    const std::string taken = folder.path() + "/taken";
    std::filesystem::create_directory(taken);
    const auto errorOf = [&](const std::string& destination) {
        return Http::download(server.origin(), destination).error();
    };
    EXPECT_EQ(errorOf(taken + "/missing/file"), (HttpError{.kind = Kind::file, .code = ENOENT}));
    EXPECT_EQ(errorOf(taken), (HttpError{.kind = Kind::file, .code = EISDIR}));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
    EXPECT_EQ(describe(errorOf(taken)), "The download couldn't be saved (Is a directory).");
}

TEST_F(HttpTest, goesThroughTheProxyOfTheEnvironment) {
    std::string asked;
    const LoopbackServer proxy([&](const Client& client, const std::string& request) {
        asked = request;
        client.send(measured("through", 7));
    });
    ::setenv("http_proxy", proxy.origin().c_str(), 1);
    EXPECT_EQ(Http::fetch("http://release.invalid/stable.json"), "through");
    ::unsetenv("http_proxy");
    EXPECT_TRUE(asked.starts_with("GET http://release.invalid/stable.json HTTP/1.1\r\n"));
    EXPECT_NE(asked.find("\r\nCache-Control: no-cache\r\n"), std::string::npos);
    EXPECT_NE(asked.find("\r\nAccept-Encoding: identity\r\n"), std::string::npos);
}

}  // namespace
}  // namespace tarnik
