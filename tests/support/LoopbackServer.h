#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include <sys/socket.h>

#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"
#include "core/process/Spawner.h"

struct bio_st;
struct ssl_ctx_st;

namespace tarnik {

// Serves a loopback port by a test's script, one connection after the other, on a thread of its own. Over TLS
// it uses a self-signed certificate for "localhost".
class LoopbackServer {
public:
    enum class Security { none, tls, expiredTls };

    // One connection, closed when the script returns.
    class Client {
    public:
        Client(int fd, int stop, bio_st* stream) : fd_(fd), stop_(stop), stream_(stream) {}

        // Returns false after the client has disconnected.
        bool send(std::string_view bytes) const;
        // Returns true if the client disconnects within this time, or the server stops.
        bool disconnects(Seconds within) const;

    private:
        int fd_;
        int stop_;
        bio_st* stream_;
    };
    // `request` is the head of the request.
    using Script = std::function<void(const Client& client, const std::string& request)>;

    explicit LoopbackServer(Script script, Security security = Security::none);
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;
    ~LoopbackServer();

    // Returns "http://127.0.0.1:1234" or "https://localhost:1234".
    const std::string& origin() const { return origin_; }
    const std::string& certificate() const { return certificate_; }  // PEM

private:
    void serve() const;
    void serve(int fd) const;

    const Script script_;
    const UniqueFd listening_{::socket(AF_INET, SOCK_STREAM, 0)};
    Spawner::Pipe stop_ = *Spawner::pipe();
    std::shared_ptr<ssl_ctx_st> tls_;
    std::string origin_;
    std::string certificate_;
    std::thread thread_;
};

}  // namespace tarnik
