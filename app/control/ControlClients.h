#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <poll.h>

#include "app/control/ControlConnection.h"

namespace tarnik {

// The connected clients of the control socket.
//
// Owned by ControlServer and used on its thread only.
class ControlClients {
public:
    using Client = std::uint64_t;  // identifies a connection; never repeats

    static constexpr std::size_t maxClients = 16;

    // Called on the server's thread; must return at once.
    struct Handlers {
        // The client's next request is passed on after the first answer to this one.
        std::function<void(Client, const ControlRequest&)> onRequest;
        // Called once for each client that has made a request.
        std::function<void(Client)> onClosed;
    };

    // The line of an answer.
    struct Answer {
        Client client = 0;
        std::int64_t id = 0;
        ControlAnswer::Position position = ControlAnswer::Position::last;
        std::string line;
    };

    ControlClients(Handlers handlers, ControlLimits limits);

    // Adds a client. Refuses it if it belongs to another user or if there are too many.
    void add(UniqueFd socket);

    // Appends one entry for each client.
    void appendEntries(std::vector<pollfd>& entries) const;

    // Returns the time at which serve() has to be called even if no client sends anything.
    std::optional<TimePoint> due() const;

    // Adds the answers, then reads, executes and writes what is possible at once. `ready` has the entries of
    // appendEntries(). Closes the connections that have ended.
    void serve(const std::vector<Answer>& answers, const pollfd* ready);

private:
    struct Connected {
        ControlConnection connection;
        bool hasAsked = false;
    };

    void execute(Client number, Connected& client) const;

    const Handlers handlers_;
    const ControlLimits limits_;
    std::map<Client, Connected> clients_;
    Client lastClient_ = 0;
};

}  // namespace tarnik
