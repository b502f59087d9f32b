#include "app/control/ControlService.h"

#include <chrono>
#include <utility>

#include "core/node/InstalledVersion.h"

namespace tarnik {

ControlService::ControlService(Deps deps, const std::shared_ptr<AppModel>& model)
    : deps_(std::move(deps)),
      source_(deps_.source),
      home_(model->home()),
      handler_(
          {.mainThread = deps_.mainThread,
           .status =
               [this](const AppState& state) { return source_.at(state, std::chrono::system_clock::now()); },
           .openWindow = deps_.openWindow,
           .quit = deps_.quit,
           .answer = [this](auto client, auto id, const auto& result,
                            auto position) { server_->answer(client, id, result, position); },
           .refuse = [this](auto client, auto id, const auto& error) { server_->refuse(client, id, error); }},
          model) {
    followJournal();
    source_.helperVersion = [this] { return helperVersion_; };
    readHelperVersion();
    model->observe(guard_.wrap([this](const AppState& now, const AppState& next) {
        if (next.setup != now.setup && !std::holds_alternative<Setups::Installing>(next.setup))
            readHelperVersion();
    }));
    const auto post = guard_.wrapPost(deps_.mainThread.post);
    auto started = ControlServer::start(
        deps_.folders,
        {.onRequest =
             [this, post](auto client, const auto& request) {
                 post([this, client, request] { handler_.handle(client, request); });
             },
         .onClosed = [this, post](auto client) { post([this, client] { handler_.closed(client); }); }});
    if (!started) {
        deps_.log(started.error());
        return;
    }
    source_.folders.socket = (*started)->path();
    server_ = *std::move(started);
}

ControlService::~ControlService() = default;

// The events in memory are only the latest ones, so the history of the run is kept beside them.
void ControlService::followJournal() {
    history_ = RunHistory::of(deps_.journal->events());
    const auto post = guard_.wrapPost(deps_.mainThread.post);
    deps_.journal->observe(
        [this, post](const JournalEvent& event) { post([this, event] { history_.apply(event); }); });
    source_.events = [journal = deps_.journal] { return journal->events(); };
    source_.history = [this] { return history_; };
}

// Reads on another thread, because a disk may hang.
void ControlService::readHelperVersion() {
    if (!home_) return;
    const auto post = guard_.wrapPost(deps_.mainThread.post);
    (void)deps_.detach("tarnik.version", [this, post, home = *home_] {
        post([this, version = installedVersion(home)] { helperVersion_ = version; });
    });
}

}  // namespace tarnik
