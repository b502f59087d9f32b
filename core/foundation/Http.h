#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string>

#include "core/foundation/Time.h"

namespace tarnik {

// Why a request failed.
struct HttpError {
    enum class Kind {
        badStatus,  // not status 200, or 200 without a body
        tooLarge,
        cutShort,  // the body is shorter than announced
        stalled,   // no answer in time, or too few bytes for too long
        file,      // the destination can't be written
        transport,
    };

    Kind kind = Kind::transport;
    int code = 0;      // the HTTP status for badStatus, an errno value for file
    std::string text;  // for transport: the message of libcurl or the loader, one short line

    bool operator==(const HttpError&) const = default;
};

// Returns a short sentence for a person: "The server answered with status 404."
std::string describe(const HttpError& error);

// Limits of a request. Name look-up, connection and TLS together must be done within `timeout`. Afterwards
// each stretch of that length must transfer `floorBytesPerSecond` times its length, or end the body. A body
// that is transferred faster may take any time.
struct HttpOptions {
    std::int64_t bodyBytes = std::int64_t{1} << 20;  // a larger body fails
    Seconds timeout = Seconds(20);
    std::int64_t floorBytesPerSecond = 1024;
    std::string authorities;  // a PEM file of trusted certificate authorities; empty for the system's
};

// GET requests over http and https, through the proxies that the environment names. Blocks: call it from
// background threads, from several at once if needed. A running request doesn't delay the program's exit.
//
// TLS is always verified. Follows at most 5 redirects, and none from https to http. Sends no cookies,
// bypasses caches and decodes no content.
struct Http {
    static constexpr int maximumRedirects = 5;
    static constexpr int maximumReportsPerSecond = 10;

    // Called on the downloading thread with the received bytes, and the total if the server announced it.
    // Must not throw.
    using Progress = std::function<void(std::int64_t received, std::optional<std::int64_t> total)>;

    static HttpOptions downloadOptions() {
        return {.bodyBytes = std::int64_t{512} << 20, .timeout = Seconds(120)};
    }

    // Returns the body.
    static std::expected<std::string, HttpError> fetch(const std::string& url,
                                                       const HttpOptions& options = {});

    // Stores the body at `destination`, readable for this user only, and replaces a file or link there. Until
    // it is complete it is kept in a temporary file in the same folder. On failure that file is removed and
    // the destination is unchanged. `progress` is called a last time after the destination was replaced.
    static std::expected<void, HttpError> download(const std::string& url, const std::string& destination,
                                                   const HttpOptions& options = downloadOptions(),
                                                   const Progress& progress = {});
};

}  // namespace tarnik
