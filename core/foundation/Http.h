#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string>

#include "core/foundation/Time.h"

namespace tarnik {

// Why a request brought nothing.
struct HttpError {
    enum class Kind {
        badStatus,  // not status 200, or 200 without a body
        tooLarge,
        cutShort,  // less came than was announced
        stalled,   // no answer in time, or too little came for too long
        file,      // the destination can't be written
        transport,
    };

    Kind kind = Kind::transport;
    int code = 0;      // of badStatus the status, of file an errno value
    std::string text;  // of transport: libcurl's or the loader's words, one short line

    bool operator==(const HttpError&) const = default;
};

// A short sentence for a person: "The server answered with status 404."
std::string describe(const HttpError& error);

// Limits of a request. `timeout` bounds each wait for the other side: name, connection and TLS together must
// be done within it, and afterwards each such stretch must bring `floorBytesPerSecond` times its length or
// the end of the body. A body that keeps moving may take any time.
struct HttpOptions {
    std::int64_t bodyBytes = std::int64_t{1} << 20;  // more is refused
    Seconds timeout = Seconds(20);
    std::int64_t floorBytesPerSecond = 1024;
    std::string authorities;  // a PEM file of the certificate authorities to trust; empty: the system's
};

// GET, over http and https only, with proxies as the environment names them. Blocks: for background threads,
// of which each may call at any time. A thread still inside does not keep the program from ending.
//
// TLS is always verified. Follows 5 redirects at most, and none from https back to http. Sends no cookies,
// takes no cached answer, and decodes no content.
struct Http {
    static constexpr int maximumRedirects = 5;
    static constexpr int maximumReportsPerSecond = 10;

    // Bytes so far, and of how many, where the server told. Called on the thread that downloads; must not
    // throw.
    using Progress = std::function<void(std::int64_t received, std::optional<std::int64_t> total)>;

    static HttpOptions downloadOptions() {
        return {.bodyBytes = std::int64_t{512} << 20, .timeout = Seconds(120)};
    }

    // The body.
    static std::expected<std::string, HttpError> fetch(const std::string& url,
                                                       const HttpOptions& options = {});

    // Puts the body at `destination`, in place of a file or link there, for this user only. Until all of it
    // has come it grows in a file beside it, with a name of its own; after a failure nothing of it is left
    // and the destination is as it was. `progress` hears once more when all is in place.
    static std::expected<void, HttpError> download(const std::string& url, const std::string& destination,
                                                   const HttpOptions& options = downloadOptions(),
                                                   const Progress& progress = {});
};

}  // namespace tarnik
