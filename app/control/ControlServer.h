#pragma once

#include <atomic>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "app/control/ControlClients.h"
#include "app/control/ControlListener.h"
#include "core/foundation/Mutex.h"
#include "core/process/Spawner.h"

namespace tarnik {

// Serves the control socket on a thread of its own: accepts programs of this user, passes on their requests,
// and sends the answers. The thread sleeps while no client is connected.
//
// Owned by ControlService, one per run. A client can't block it or make it use much memory: each has one
// request at a time, a time limit, and bounded input and output.
class ControlServer {
public:
    using Client = ControlClients::Client;
    using Handlers = ControlClients::Handlers;

    // Listens in the first folder that it can use. Returns a line for the log on failure.
    static std::expected<std::unique_ptr<ControlServer>, std::string> start(
        const std::vector<std::string>& folders, Handlers handlers, ControlLimits limits = {});

    // Closes all connections and removes the socket. Waiting answers are sent if that is possible at once.
    ~ControlServer();
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

    // Send an answer. `result` is a JSON object. Ignored if the client has disconnected. Call from any
    // thread.
    void answer(Client client, std::int64_t id, const std::string& result,
                ControlAnswer::Position position = ControlAnswer::Position::last);
    void refuse(Client client, std::int64_t id, const ControlError& error);

    const std::string& path() const { return listener_.path(); }

private:
    ControlServer(ControlListener listener, Spawner::Pipe wake, Handlers handlers, ControlLimits limits);

    void send(ControlClients::Answer answer);
    void wake() const;
    void run();
    int millisecondsToNextDue() const;
    std::vector<ControlClients::Answer> takeAnswers();
    void acceptClient();

    const ControlListener listener_;
    const Spawner::Pipe wake_;
    std::atomic<bool> ending_ = false;
    Mutex mutex_;
    std::vector<ControlClients::Answer> answers_ TARNIK_GUARDED_BY(mutex_);

    // Used on the thread only.
    ControlClients clients_;
    std::optional<TimePoint> acceptsAgain_;  // set after a failure such as a lack of descriptors

    std::thread thread_;
};

}  // namespace tarnik
