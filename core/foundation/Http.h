#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "core/foundation/ProxyRoute.h"
#include "core/foundation/Time.h"

namespace tarnik {

// The reason why a request failed.
struct HttpError {
    enum class Kind {
        badStatus,  // not status 200, or 200 without a body
        tooLarge,
        cutShort,     // the body is shorter than announced
        stalled,      // no answer in time, or too few bytes for too long
        file,         // the destination can't be written
        unresolved,   // the host name or the proxy's name has no address
        unreachable,  // no connection to the server or the proxy
        proxyLogin,   // the proxy requires a name and a password
        untrusted,    // the server's certificate isn't trusted
        notValidNow,  // the server's certificate has expired or isn't valid yet
        transport,    // any other failure
    };

    static constexpr int proxyLoginStatus = 407;

    Kind kind = Kind::transport;
    int code = 0;      // the HTTP status for badStatus, an errno value for file
    std::string text;  // for the kinds from unresolved on: one short line that explains the failure
    std::string proxy =
        {};  // the name of the proxy that the last attempt used; empty for a direct connection

    bool operator==(const HttpError&) const = default;
};

// Returns a short sentence for the user, such as "The server answered with status 404."
std::string describe(const HttpError& error);

// Returns true if the request ended before a connection was made, or is stalled.
bool isWithoutConnection(const HttpError& error);

// Returns the error with the name of the route's proxy. A proxy's status 407 becomes proxyLogin.
HttpError through(const ProxyRoute& route, HttpError error);

// Limits and settings of a request. The name resolution, the connection and the TLS handshake must together
// complete within `timeout`, which all routes to the server share. After that the average rate over each
// period of `timeout` must be at least `floorBytesPerSecond`. The total time has no limit. Time during which
// the machine sleeps doesn't count.
struct HttpOptions {
    std::int64_t bodyBytes = std::int64_t{1} << 20;  // a larger body fails
    Seconds timeout = Seconds(20);
    std::int64_t floorBytesPerSecond = 1024;
    std::string authorities = {};  // a PEM file of trusted certificate authorities; if empty, the system's
    ProxyLookup proxies = {};      // if absent, libcurl reads the environment
};

// The answer to a request that succeeded.
struct HttpAnswer {
    std::string body;
    std::optional<std::chrono::sys_seconds> date;  // the server's clock, if the server sent a valid date
};

// Sends GET requests over http and https, through the proxies of HttpOptions. If a proxy can't be reached,
// the next route is tried. The functions block, so call them on background threads. Several threads may call
// them at once. A running request doesn't delay the program's exit.
//
// TLS certificates are always verified. A request follows at most 5 redirects, and none from https to http.
// It sends no cookies, bypasses caches and doesn't decode compressed content.
struct Http {
    static constexpr int maximumRedirects = 5;
    static constexpr int maximumReportsPerSecond = 10;

    // Called on the downloading thread with the number of received bytes, and with the total if the server
    // has announced one. Must not throw.
    using Progress = std::function<void(std::int64_t received, std::optional<std::int64_t> total)>;

    static HttpOptions downloadOptions(ProxyLookup proxies = {}) {
        return {.bodyBytes = std::int64_t{512} << 20, .timeout = Seconds(120), .proxies = std::move(proxies)};
    }

    // ask() returns the body and the server's date. fetch() returns the body only.
    static std::expected<HttpAnswer, HttpError> ask(const std::string& url, const HttpOptions& options = {});
    static std::expected<std::string, HttpError> fetch(const std::string& url,
                                                       const HttpOptions& options = {}) {
        auto answer = ask(url, options);
        if (!answer) return std::unexpected(std::move(answer.error()));
        return std::move(answer->body);
    }

    // Stores the body in the file `destination`, which only this user can read. Replaces a file or link
    // there. The body is first written to a temporary file in the same folder. On failure that file is
    // removed and the destination is unchanged. The last call of `progress` follows the replacement.
    static std::expected<void, HttpError> download(const std::string& url, const std::string& destination,
                                                   const HttpOptions& options = downloadOptions(),
                                                   const Progress& progress = {});
};

}  // namespace tarnik
