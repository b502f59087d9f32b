#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "app/control/ControlServer.h"
#include "app/control/Status.h"
#include "app/model/AppModel.h"
#include "core/foundation/CallbackGuard.h"

namespace tarnik {

// The effects of ControlHandler.
struct ControlHandlerDeps {
    MainThread mainThread;
    std::function<Status(const AppState&)> status;
    std::function<void()> openWindow;  // empty if the program has no window
    std::function<void()> quit;

    // Send an answer: see ControlServer.
    std::function<void(ControlServer::Client, std::int64_t id, const std::string& result,
                       ControlAnswer::Position position)>
        answer;
    std::function<void(ControlServer::Client, std::int64_t id, const ControlError& error)> refuse;
};

// Executes the requests of the control socket on the model.
//
// Owned by ControlService, one per run. Main thread only; no operation blocks. A client has one stream at a
// time, for `watch` or `connect`. If the client of a `connect` disconnects, its pairing is cancelled.
class ControlHandler {
public:
    using Client = ControlServer::Client;

    // A watched status is built anew after this time, because "12 seconds ago" changes without an event.
    static constexpr Seconds watchInterval = Seconds(1);

    ControlHandler(ControlHandlerDeps deps, std::shared_ptr<AppModel> model);

    void handle(Client client, const ControlRequest& request);
    void closed(Client client);

private:
    enum class StreamKind { watch, pairing };
    struct Stream {
        StreamKind kind;
        std::int64_t id;
        std::string last;  // the last result
    };

    void answer(Client client, const ControlRequest& request, const std::string& result = "{}") const;
    void refuse(Client client, const ControlRequest& request, std::string_view code,
                std::string_view message) const;
    void connect(Client client, const ControlRequest& request);
    void restart(Client client, const ControlRequest& request);
    void open(Client client, const ControlRequest& request, StreamKind kind);
    void update(Client client, Stream& stream, const std::string& result) const;
    void stateChanges(const AppState& next);
    bool follow(Client client, Stream& stream, const AppState& next) const;
    void refreshWatchers();

    const ControlHandlerDeps deps_;
    const std::shared_ptr<AppModel> model_;
    std::map<Client, Stream> streams_;
    std::optional<RepeatingTimer> watchTimer_;  // while a client watches
    bool refreshPosted_ = false;
    const CallbackGuard guard_;
};

}  // namespace tarnik
