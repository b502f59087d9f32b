#include "app/control/ControlHandler.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <unistd.h>

#include "app/control/JsonObject.h"
#include "app/control/PairingProgress.h"
#include "app/failures/FailureCause.h"
#include "app/texts/ControlTexts.h"
#include "app/texts/LinkTexts.h"
#include "app/texts/MachineTexts.h"

namespace tarnik {

using Kind = ControlRequest::Kind;
using Position = ControlAnswer::Position;

ControlHandler::ControlHandler(ControlHandlerDeps deps, std::shared_ptr<AppModel> model)
    : deps_(std::move(deps)), model_(std::move(model)) {
    model_->observe(guard_.wrap([this](const AppState&, const AppState& next) { stateChanges(next); }));
}

void ControlHandler::answer(Client client, const ControlRequest& request, const std::string& result) const {
    deps_.answer(client, request.id, result, Position::last);
}

void ControlHandler::refuse(Client client, const ControlRequest& request, std::string_view code,
                            std::string_view message) const {
    deps_.refuse(client, request.id, {.code = std::string(code), .message = std::string(message)});
}

void ControlHandler::handle(Client client, const ControlRequest& request) {
    const auto& state = model_->state();
    const bool changesNothing = request.kind == Kind::status || request.kind == Kind::watch;
    if (state.stopping && !changesNothing && request.kind != Kind::quit)
        return refuse(client, request, ControlErrors::stopping, ControlTexts::stopping);
    switch (request.kind) {
        case Kind::status: return answer(client, request, deps_.status(state).json());
        case Kind::watch: return open(client, request, StreamKind::watch);
        case Kind::connect: return connect(client, request);
        case Kind::restart: return restart(client, request);
        case Kind::open:
            if (!deps_.openWindow)
                return refuse(client, request, ControlErrors::refused, ControlTexts::noWindow);
            deps_.openWindow();
            return answer(client, request);
        case Kind::confirm:
            if (!state.pairing || !std::holds_alternative<PairingPhases::WaitingForYes>(state.pairing->phase))
                return refuse(client, request, ControlErrors::refused, ControlTexts::nothingToConfirm);
            model_->pairing().confirm();
            return answer(client, request);
        case Kind::cancel:
            if (!model_->pairing().isInProgress())
                return refuse(client, request, ControlErrors::refused, ControlTexts::noPairing);
            model_->pairing().cancel();
            return answer(client, request);
        case Kind::quit: {
            JsonObject process;
            process.addNumber("pid", ::getpid());
            answer(client, request, process.text());
            return deps_.quit();
        }
    }
}

void ControlHandler::closed(Client client) {
    const auto found = streams_.find(client);
    if (found == streams_.end()) return;
    const bool wasPairing = found->second.kind == StreamKind::pairing;
    streams_.erase(found);
    const auto watches = [](const auto& entry) { return entry.second.kind == StreamKind::watch; };
    if (std::ranges::none_of(streams_, watches)) watchTimer_.reset();
    if (wasPairing && model_->pairing().isInProgress()) model_->pairing().cancel();
}

// A refusal is shown by the client only, so the message for the window is dismissed.
void ControlHandler::connect(Client client, const ControlRequest& request) {
    auto& pairing = model_->pairing();
    if (pairing.isInProgress() || streams_.contains(client))
        return refuse(client, request, ControlErrors::busy, describe(PairingFailure::busy));
    pairing.connect(request.link);
    if (const auto offer = model_->state().replaceOffer) {
        if (request.replace == ControlRequest::Replace::no) {
            pairing.declineOffer();
            return refuse(client, request, ControlErrors::joined, ControlTexts::replaceHint);
        }
        pairing.connect(*offer, LinkPairing::Replacing::yes);
    }
    if (pairing.isInProgress()) return open(client, request, StreamKind::pairing);
    const auto message = model_->state().linkMessage.value_or(std::string(ControlTexts::pairingCancelled));
    pairing.dismissMessage();
    refuse(client, request, ControlErrors::refused, message);
}

void ControlHandler::restart(Client client, const ControlRequest& request) {
    const auto& state = model_->state();
    const auto refused = [this, client, request](std::string_view why) {
        refuse(client, request, ControlErrors::refused, why);
    };
    if (state.homeError) return refused(MachineTexts::homeUnusable);
    if (std::holds_alternative<Setups::Failed>(state.setup)) return refused(MachineTexts::installFailed);
    if (!std::holds_alternative<Setups::Ready>(state.setup)) return refused(LinkTexts::stillInstalling);
    if (std::holds_alternative<NodeStates::WaitingForLink>(state.node))
        return refuse(client, request, ControlErrors::notJoined, ControlTexts::notJoined);
    model_->restartHelper(guard_.wrap([this, client, request, refused](bool restarted) {
        if (!restarted) return refuse(client, request, ControlErrors::busy, ControlTexts::pairingInProgress);
        const auto& node = model_->state().node;
        if (std::holds_alternative<NodeStates::NotInstalled>(node))
            return refused(ControlTexts::helperMissing);
        if (std::holds_alternative<NodeStates::Restarting>(node)) return refused(ControlTexts::notStarted);
        answer(client, request);
    }));
}

void ControlHandler::open(Client client, const ControlRequest& request, StreamKind kind) {
    if (streams_.contains(client))
        return refuse(client, request, ControlErrors::busy, ControlTexts::streamOpen);
    auto& stream =
        streams_.try_emplace(client, Stream{.kind = kind, .id = request.id, .last = {}}).first->second;
    if (kind == StreamKind::pairing) {
        update(client, stream, PairingProgress::of(model_->state()).json());
        return;
    }
    update(client, stream, deps_.status(model_->state()).json());
    if (!watchTimer_)
        watchTimer_ = deps_.mainThread.repeat(watchInterval, guard_.wrap([this] { refreshWatchers(); }));
}

void ControlHandler::update(Client client, Stream& stream, const std::string& result) const {
    if (std::exchange(stream.last, result) != result)
        deps_.answer(client, stream.id, result, Position::update);
}

// Called inside a change of the model. The status is built later, once for several changes in a row.
void ControlHandler::stateChanges(const AppState& next) {
    for (auto entry = streams_.begin(); entry != streams_.end();) {
        auto& [client, stream] = *entry;
        const bool isOver = stream.kind == StreamKind::pairing && follow(client, stream, next);
        entry = isOver ? streams_.erase(entry) : std::next(entry);
    }
    if (!watchTimer_ || std::exchange(refreshPosted_, true)) return;
    deps_.mainThread.post(guard_.wrap([this] {
        refreshPosted_ = false;
        refreshWatchers();
    }));
}

// Returns true if the pairing is over, and the stream with it.
bool ControlHandler::follow(Client client, Stream& stream, const AppState& next) const {
    const bool isOver = !next.checkingLink && !(next.pairing && isInProgress(next.pairing->phase));
    if (!isOver) {
        update(client, stream, PairingProgress::of(next).json());
    } else if (next.pairing) {
        deps_.answer(client, stream.id, PairingProgress::of(next).json(), Position::last);
    } else {
        const bool isRefused = next.linkMessage && !next.stopping;
        std::string message = isRefused ? withCause(*next.linkMessage, next.linkCause)
                                        : std::string(ControlTexts::pairingCancelled);
        deps_.refuse(client, stream.id,
                     {.code = std::string(isRefused ? ControlErrors::refused : ControlErrors::cancelled),
                      .message = std::move(message)});
    }
    return isOver;
}

void ControlHandler::refreshWatchers() {
    std::optional<std::string> status;  // built for the first watcher
    for (auto& [client, stream] : streams_) {
        if (stream.kind != StreamKind::watch) continue;
        if (!status) status = deps_.status(model_->state()).json();
        update(client, stream, *status);
    }
}

}  // namespace tarnik
