#include "core/foundation/Http.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <string_view>
#include <utility>

#include <curl/curl.h>
#include <strings.h>

#include "core/foundation/Crypto.h"
#include "core/foundation/DownloadReports.h"
#include "core/foundation/PartFile.h"
#include "core/foundation/SharedLibrary.h"
#include "core/foundation/SystemError.h"
#include "core/foundation/TextCleanup.h"
#include "core/foundation/TransferPace.h"

namespace tarnik {
namespace {

using Kind = HttpError::Kind;

// The libcurl functions that we use. The loaded library may be older than the headers: macOS 13.0 has 7.84.
// The oldest version that works is 7.80, because CURLOPT_PREREQFUNCTION was added in 7.80.
struct Curl {
    SharedLibrary library{SharedLibrary::curlFile};
    decltype(&curl_global_init) start = find<decltype(curl_global_init)>("curl_global_init");
    decltype(&curl_easy_init) open = find<decltype(curl_easy_init)>("curl_easy_init");
    decltype(&curl_easy_cleanup) close = find<decltype(curl_easy_cleanup)>("curl_easy_cleanup");
    decltype(&curl_easy_setopt) set = find<decltype(curl_easy_setopt)>("curl_easy_setopt");
    decltype(&curl_easy_getinfo) info = find<decltype(curl_easy_getinfo)>("curl_easy_getinfo");
    decltype(&curl_easy_strerror) explain = find<decltype(curl_easy_strerror)>("curl_easy_strerror");
    decltype(&curl_getdate) parseDate = find<decltype(curl_getdate)>("curl_getdate");
    decltype(&curl_slist_append) append = find<decltype(curl_slist_append)>("curl_slist_append");
    decltype(&curl_slist_free_all) freeList = find<decltype(curl_slist_free_all)>("curl_slist_free_all");
    decltype(&curl_multi_init) openMulti = find<decltype(curl_multi_init)>("curl_multi_init");
    decltype(&curl_multi_cleanup) closeMulti = find<decltype(curl_multi_cleanup)>("curl_multi_cleanup");
    decltype(&curl_multi_add_handle) add = find<decltype(curl_multi_add_handle)>("curl_multi_add_handle");
    decltype(&curl_multi_remove_handle) remove =
        find<decltype(curl_multi_remove_handle)>("curl_multi_remove_handle");
    decltype(&curl_multi_perform) perform = find<decltype(curl_multi_perform)>("curl_multi_perform");
    decltype(&curl_multi_poll) poll = find<decltype(curl_multi_poll)>("curl_multi_poll");
    decltype(&curl_multi_info_read) nextMessage =
        find<decltype(curl_multi_info_read)>("curl_multi_info_read");

    template <class Function>
    Function* find(const char* name) {
        Function* function = nullptr;
        library.find(function, name);
        return function;
    }
};
using LoadedCurl = std::expected<Curl, std::string>;

// Starts libcrypto first, without its clean-up at exit. libcurl would start libcrypto with that clean-up.
LoadedCurl loadCurl() {
    if (auto crypto = startCrypto(); !crypto) return std::unexpected(std::move(crypto.error()));
    Curl curl;
    if (curl.library.failure()) return std::unexpected(*curl.library.failure());
    if (curl.start(CURL_GLOBAL_DEFAULT) != CURLE_OK) return std::unexpected("libcurl can't start");
    return curl;
}

// libcurl must be initialised once, by one thread, before any other call. A local static ensures that.
// libcurl is never cleaned up, because a transfer may still run when the program exits.
const LoadedCurl& loadedCurl() {
    static const auto* const result = new LoadedCurl(loadCurl());
    return *result;
}

// libcurl's message may contain text from the server, such as a host name or a certificate's fields.
HttpError transportError(std::string_view text, Kind kind = Kind::transport) {
    constexpr std::size_t longest = 200;
    return {.kind = kind, .text = sanitizedLine(text, longest)};
}

HttpError fileError() {
    return {.kind = Kind::file, .code = errno};
}

// One GET request with its redirects. Exists for one call, on the caller's thread.
class Transfer {
public:
    // Receives a piece of the body, and the body's length if the server has announced one. A returned error
    // ends the transfer.
    using Sink =
        std::function<std::optional<HttpError>(std::string_view piece, std::optional<std::int64_t> total)>;

    Transfer(const Curl& curl, const HttpOptions& options, Sink sink)
        : curl_(curl), options_(options), sink_(std::move(sink)) {}
    std::expected<void, HttpError> get(std::string url);
    std::optional<std::chrono::sys_seconds> date() const { return date_; }  // of the last answer

private:
    bool configure();
    bool takeOnlyTheWeb();
    // The address of a redirect, or std::nullopt if the body is complete.
    using Next = std::expected<std::optional<std::string>, HttpError>;
    Next request(const std::string& url);
    CURLcode performWithin(Seconds connectTimeout);
    CURLcode perform();
    Next next(CURLcode result);
    HttpError failure(CURLcode result) const;
    Kind kindOf(CURLcode result) const;

    std::size_t take(std::string_view piece);
    bool isMoving();
    template <class Value>
    Value info(CURLINFO which) const {
        Value value{};
        curl_.info(handle_.get(), which, &value);
        return value;
    }

    // libcurl's callbacks; `self` is the Transfer.
    static int onConnected(void* self, char*, char*, int, int) noexcept;
    static std::size_t onHeader(char* bytes, std::size_t, std::size_t count, void* self) noexcept;
    static std::size_t onBody(char* bytes, std::size_t, std::size_t count, void* self) noexcept;

    const Curl& curl_;
    const HttpOptions& options_;
    const Sink sink_;
    std::array<char, CURL_ERROR_SIZE> words_{};
    std::unique_ptr<curl_slist, decltype(Curl::freeList)> headers_{nullptr, curl_.freeList};
    bool secure_ = false;  // https was used, so http is refused from now on
    TransferPace pace_{options_.timeout, options_.floorBytesPerSecond};
    std::optional<HttpError> refusal_;  // set if we aborted the transfer
    std::int64_t taken_ = 0;
    std::optional<std::chrono::sys_seconds> date_;
    std::unique_ptr<CURLM, decltype(Curl::closeMulti)> multi_{nullptr, curl_.closeMulti};
    std::unique_ptr<CURL, decltype(Curl::close)> handle_{nullptr, curl_.close};  // destroyed before multi_
};

std::expected<void, HttpError> Transfer::get(std::string url) {
    multi_.reset(curl_.openMulti());
    handle_.reset(curl_.open());
    if (!multi_ || !handle_ || !configure())
        return std::unexpected(transportError("libcurl lacks what is needed"));

    for (int redirects = 0; redirects <= Http::maximumRedirects; ++redirects) {
        auto next = request(url);
        if (!next) return std::unexpected(std::move(next.error()));
        if (!*next) return {};
        url = std::move(**next);
    }
    return std::unexpected(transportError("too many redirects"));
}

// Leaves libcurl's own redirects off, because libcurl would follow http to https and back to http, and would
// read the body of a redirect without a limit.
bool Transfer::configure() {
    bool accepted = true;
    const auto set = [&](CURLoption option, auto value) {
        accepted = accepted && curl_.set(handle_.get(), option, value) == CURLE_OK;
    };
    for (const char* header : {"Cache-Control: no-cache", "Accept-Encoding: identity"}) {
        curl_slist* const list = curl_.append(headers_.get(), header);
        if (list == nullptr) return false;
        if (!headers_) headers_.reset(list);
    }

    set(CURLOPT_HTTPHEADER, headers_.get());
    set(CURLOPT_USERAGENT, "tarnik");
    set(CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1});  // HTTP/2 has no advantage for a single request
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    set(CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2});
    // The default authorities are the system's. On macOS this is the system's libcurl, whose TLS library also
    // accepts what the trust settings of the keychains accept, like the system's own downloads. An export of
    // the keychains' certificates would lose their settings, and CURLSSLOPT_NATIVE_CA is unknown to that
    // libcurl.
    if (!options_.authorities.empty()) {
        set(CURLOPT_CAINFO, options_.authorities.c_str());
        set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
    }
    set(CURLOPT_BUFFERSIZE, 100L << 10);  // the default of 16 KiB is a fifth slower
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_MAXFILESIZE_LARGE, curl_off_t{options_.bodyBytes});
    set(CURLOPT_ERRORBUFFER, words_.data());
    set(CURLOPT_PREREQFUNCTION, &Transfer::onConnected);
    set(CURLOPT_PREREQDATA, this);
    set(CURLOPT_HEADERFUNCTION, &Transfer::onHeader);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &Transfer::onBody);
    set(CURLOPT_WRITEDATA, this);
    // This option exists since 7.87. Without the option, a time-out waits for the name resolver.
    curl_.set(handle_.get(), CURLOPT_QUICK_EXIT, 1L);
    return accepted;
}

// Allows only http and https. libcurl accepts the names of protocols since 7.85. Older versions accept bits.
bool Transfer::takeOnlyTheWeb() {
    const char* const names = secure_ ? "https" : "http,https";
    const CURLcode result = curl_.set(handle_.get(), CURLOPT_PROTOCOLS_STR, names);
    if (result != CURLE_UNKNOWN_OPTION) return result == CURLE_OK;
    // CURLOPT_PROTOCOLS, which is deprecated in newer headers.
    constexpr auto protocols = static_cast<CURLoption>(CURLOPTTYPE_LONG + 181);
    const long bits = secure_ ? CURLPROTO_HTTPS : CURLPROTO_HTTP | CURLPROTO_HTTPS;
    return curl_.set(handle_.get(), protocols, bits) == CURLE_OK;
}

// Tries the routes in their order until one makes a connection. The routes share the time that is left, so a
// route that fails at once takes none. Without routes, libcurl reads the environment.
Transfer::Next Transfer::request(const std::string& url) {
    if (url.find('\0') != std::string::npos) return std::unexpected(transportError("the address is broken"));
    if (!takeOnlyTheWeb()) return std::unexpected(transportError("libcurl lacks what is needed"));
    if (curl_.set(handle_.get(), CURLOPT_URL, url.c_str()) != CURLE_OK)
        return std::unexpected(transportError("the address is broken"));

    const auto routes = options_.proxies ? options_.proxies(url) : ProxyRoutes();
    if (routes.empty()) return next(performWithin(options_.timeout));
    const TimePoint deadline = after(steadyNow(), options_.timeout);
    Next last;
    for (auto remaining = static_cast<double>(routes.size()); const auto& route : routes) {
        // These replace the environment's proxy and exceptions. An empty proxy is a direct connection.
        if (curl_.set(handle_.get(), CURLOPT_PROXY, route.address.c_str()) != CURLE_OK ||
            curl_.set(handle_.get(), CURLOPT_NOPROXY, "") != CURLE_OK)
            return std::unexpected(transportError("the proxy's address is broken"));
        last = next(performWithin(Seconds(deadline - steadyNow()) / remaining--));
        if (last) return last;
        last.error() = through(route, std::move(last.error()));
        if (pace_.isConnected() || !isWithoutConnection(last.error())) return last;
    }
    return last;
}

// libcurl's clock may count the sleep of the machine. An attempt that libcurl ends too early is repeated with
// the rest of the time.
CURLcode Transfer::performWithin(Seconds connectTimeout) {
    const TimePoint deadline = after(steadyNow(), connectTimeout);
    while (true) {
        pace_.reset();
        date_.reset();
        words_[0] = '\0';
        const Seconds left = deadline - steadyNow();
        const long milliseconds = std::chrono::ceil<std::chrono::milliseconds>(left).count();
        curl_.set(handle_.get(), CURLOPT_CONNECTTIMEOUT_MS, std::max(1L, milliseconds));
        const CURLcode result = perform();
        if (result != CURLE_OPERATION_TIMEDOUT || pace_.isConnected() || steadyNow() >= deadline)
            return result;
    }
}

Transfer::Next Transfer::next(CURLcode result) {
    const auto status = info<long>(CURLINFO_RESPONSE_CODE);
    const bool redirected = status >= 300 && status < 400;
    // A bad status is reported even if the transfer of the response's body failed.
    const HttpError badStatus{.kind = Kind::badStatus, .code = static_cast<int>(status)};
    if (status > 200 && !redirected) return std::unexpected(badStatus);
    if (refusal_) return std::unexpected(*refusal_);
    if (result != CURLE_OK) return std::unexpected(failure(result));
    if (!redirected && taken_ > 0) return std::nullopt;

    const char* const scheme = info<char*>(CURLINFO_SCHEME);
    secure_ = scheme != nullptr && ::strcasecmp(scheme, "https") == 0;
    const char* const location = redirected ? info<char*>(CURLINFO_REDIRECT_URL) : nullptr;
    if (location == nullptr) return std::unexpected(badStatus);
    return location;
}

// Runs one request to its end. curl_easy_perform() would detect a stalled server up to a second late.
CURLcode Transfer::perform() {
    if (curl_.add(multi_.get(), handle_.get()) != CURLM_OK) return CURLE_FAILED_INIT;
    CURLcode result = CURLE_ABORTED_BY_CALLBACK;
    for (int running = 1; running != 0;) {
        CURLMcode state = curl_.perform(multi_.get(), &running);
        if (running != 0 && !isMoving()) break;
        if (running != 0 && state == CURLM_OK)
            state = curl_.poll(multi_.get(), nullptr, 0,
                               static_cast<int>(pace_.untilStalled(steadyNow()).count()), nullptr);
        if (state != CURLM_OK) break;
    }
    int left = 0;
    while (const CURLMsg* message = curl_.nextMessage(multi_.get(), &left)) {
        if (message->msg == CURLMSG_DONE) result = message->data.result;
    }
    curl_.remove(multi_.get(), handle_.get());
    return result;
}

// Once connected, libcurl reports a response that isn't HTTP as an unsupported protocol. libcurl reports a
// header that is too long as out of memory or, since 8.6, as CURLE_TOO_LARGE (100).
HttpError Transfer::failure(CURLcode result) const {
    constexpr auto tooLargeCode = static_cast<CURLcode>(100);
    if (pace_.isConnected() && (result == CURLE_UNSUPPORTED_PROTOCOL || result == CURLE_WEIRD_SERVER_REPLY))
        return transportError("the server's answer isn't HTTP");
    if (pace_.isConnected() && (result == CURLE_OUT_OF_MEMORY || result == tooLargeCode))
        return transportError("the header of the server's answer is too long");
    switch (result) {
        case CURLE_PARTIAL_FILE: return {.kind = Kind::cutShort};
        case CURLE_FILESIZE_EXCEEDED: return {.kind = Kind::tooLarge};
        case CURLE_OPERATION_TIMEDOUT: return {.kind = Kind::stalled};
        case CURLE_UNSUPPORTED_PROTOCOL: return transportError("the address is of a kind that isn't allowed");
        default: break;
    }
    return transportError(words_[0] != '\0' ? words_.data() : curl_.explain(result), kindOf(result));
}

// CURLINFO_SSL_VERIFYRESULT returns the result of OpenSSL's check, a value of X509_V_ERR_*.
Kind Transfer::kindOf(CURLcode result) const {
    constexpr long notYetValid = 9, hasExpired = 10;
    if (info<long>(CURLINFO_HTTP_CONNECTCODE) == HttpError::proxyLoginStatus) return Kind::proxyLogin;
    switch (result) {
        case CURLE_COULDNT_RESOLVE_HOST:
        case CURLE_COULDNT_RESOLVE_PROXY: return Kind::unresolved;
        case CURLE_COULDNT_CONNECT:
        case CURLE_PROXY: return Kind::unreachable;
        case CURLE_PEER_FAILED_VERIFICATION: break;
        default: return Kind::transport;
    }
    const auto why = info<long>(CURLINFO_SSL_VERIFYRESULT);
    return why == notYetValid || why == hasExpired ? Kind::notValidNow : Kind::untrusted;
}

// Returns the number of consumed bytes. Any number but piece.size() ends the transfer.
std::size_t Transfer::take(std::string_view piece) {
    const auto status = info<long>(CURLINFO_RESPONSE_CODE);
    if (status >= 300 && status < 400) return piece.size();
    if (status != 200) return 0;

    const auto count = static_cast<std::int64_t>(piece.size());
    if (count > options_.bodyBytes - taken_) {
        refusal_ = HttpError{.kind = Kind::tooLarge};
        return 0;
    }
    const auto total = info<curl_off_t>(CURLINFO_CONTENT_LENGTH_DOWNLOAD_T);
    taken_ += count;
    refusal_ = sink_(piece, total >= 0 ? std::optional<std::int64_t>(total) : std::nullopt);
    return refusal_ ? 0 : piece.size();
}

// Returns false if the transfer is too slow or too large. Counts the bytes of every body, even of redirects.
bool Transfer::isMoving() {
    if (!pace_.isConnected()) return true;
    const auto received = std::int64_t{info<curl_off_t>(CURLINFO_SIZE_DOWNLOAD_T)};
    if (received > options_.bodyBytes) {
        refusal_ = HttpError{.kind = Kind::tooLarge};
    } else if (!pace_.isFastEnough(received, steadyNow())) {
        refusal_ = HttpError{.kind = Kind::stalled};
    }
    return !refusal_;
}

int Transfer::onConnected(void* self, char*, char*, int, int) noexcept {
    static_cast<Transfer*>(self)->pace_.connected(steadyNow());
    return CURL_PREREQFUNC_OK;
}

std::size_t Transfer::onHeader(char* bytes, std::size_t, std::size_t count, void* self) noexcept {
    const std::string header(bytes, count);
    auto& transfer = *static_cast<Transfer*>(self);
    if (::strncasecmp(header.c_str(), "date:", 5) != 0) return count;  // any case: RFC 9110, section 5.1
    const auto seconds = transfer.curl_.parseDate(header.c_str() + 5, nullptr);
    if (seconds >= 0) transfer.date_ = std::chrono::sys_seconds(std::chrono::seconds(seconds));
    return count;
}

std::size_t Transfer::onBody(char* bytes, std::size_t, std::size_t count, void* self) noexcept {
    return static_cast<Transfer*>(self)->take({bytes, count});
}

}  // namespace

std::expected<HttpAnswer, HttpError> Http::ask(const std::string& url, const HttpOptions& options) {
    const auto& curl = loadedCurl();
    if (!curl) return std::unexpected(transportError(curl.error()));
    HttpAnswer answer;
    Transfer transfer(*curl, options, [&](std::string_view piece, auto) -> std::optional<HttpError> {
        answer.body += piece;
        return std::nullopt;
    });
    if (auto got = transfer.get(url); !got) return std::unexpected(std::move(got.error()));
    answer.date = transfer.date();
    return answer;
}

std::expected<void, HttpError> Http::download(const std::string& url, const std::string& destination,
                                              const HttpOptions& options, const Progress& progress) {
    const auto& curl = loadedCurl();
    if (!curl) return std::unexpected(transportError(curl.error()));
    PartFile part(destination);
    if (!part.isOpen()) return std::unexpected(fileError());
    DownloadReports reports(progress);
    Transfer transfer(
        *curl, options,
        [&](std::string_view piece, std::optional<std::int64_t> total) -> std::optional<HttpError> {
            if (!part.append(piece)) return fileError();
            reports.moved(static_cast<std::int64_t>(piece.size()), total);
            return std::nullopt;
        });
    if (auto got = transfer.get(url); !got) return got;
    if (!part.moveTo(destination)) return std::unexpected(fileError());
    reports.finished();
    return {};
}

}  // namespace tarnik
