#include "app/journal/StateRecorder.h"

#include "app/failures/FailureCause.h"
#include "app/texts/FailureTexts.h"
#include "app/texts/JournalTexts.h"
#include "app/texts/LinkTexts.h"

namespace tarnik {
namespace {

template <class State, class Variant>
bool is(const Variant& variant) {
    return std::holds_alternative<State>(variant);
}

// Returns the installer's line, or an empty text.
std::string stepOf(const Setup& setup) {
    const auto* installing = std::get_if<Setups::Installing>(&setup);
    return installing != nullptr ? installing->text : "";
}

void recordSetup(Journal& journal, const AppState& now, const AppState& next) {
    if (next.setup == now.setup) return;
    if (const auto* failed = std::get_if<Setups::Failed>(&next.setup)) {
        const auto reason = withCause(withDescription(failed->sentence, failed->text), failed->cause);
        journal.record(EventCode::installRefused, JournalTexts::installRefused(reason),
                       {{EventField::reason, reason}});
    } else if (const auto step = stepOf(next.setup); !step.empty()) {
        journal.record(EventCode::installStep, step);
    } else if (is<Setups::Ready>(next.setup) && !stepOf(now.setup).empty()) {
        journal.record(EventCode::installDone, JournalTexts::installDone);
    }
}

void recordNode(Journal& journal, const AppState& now, const AppState& next) {
    if (next.node == now.node) return;
    if (is<NodeStates::WaitingForLink>(next.node))
        journal.record(EventCode::helperWaiting, JournalTexts::helperWaiting);
    if (is<NodeStates::NotInstalled>(next.node))
        journal.record(EventCode::helperMissing, JournalTexts::helperMissing);
}

// Records the phase of a session. Its text is never recorded, because it may contain the link's secrets.
struct PhaseRecorder {
    Journal& journal;

    void operator()(const PairingPhases::Starting&) const {}
    void operator()(const PairingPhases::WaitingForYes&) const {
        journal.record(EventCode::pairingPrompted, JournalTexts::pairingPrompted);
    }
    void operator()(const PairingPhases::Connecting&) const {
        journal.record(EventCode::pairingConfirmed, JournalTexts::pairingConfirmed);
    }
    void operator()(const PairingPhases::Connected&) const {
        journal.record(EventCode::pairingConnected, JournalTexts::pairingConnected);
    }
    void operator()(const PairingPhases::Ended& ended) const {
        const bool exited = ended.status.kind == ExitStatus::Kind::exited;
        journal.record(EventCode::pairingEnded, JournalTexts::pairingEnded(ended.status),
                       {{exited ? EventField::exit : EventField::signal, ended.status.number}});
    }
};

bool isPairing(const AppState& state) {
    return state.checkingLink || (state.pairing && isInProgress(state.pairing->phase));
}

void recordPairing(Journal& journal, const AppState& now, const AppState& next) {
    const bool isNewMessage = next.linkMessage && next.linkMessage != now.linkMessage;
    if (isNewMessage && *next.linkMessage != LinkTexts::checkingLink) {
        const auto reason = withCause(*next.linkMessage, next.linkCause);
        journal.record(EventCode::pairingRefused, JournalTexts::pairingRefused(reason),
                       {{EventField::reason, reason}});
    } else if (now.replaceOffer && !next.replaceOffer && !next.checkingLink) {
        journal.record(EventCode::pairingCancelled, JournalTexts::pairingDeclined);
    } else if (isPairing(now) && !isPairing(next) && !next.pairing) {
        journal.record(EventCode::pairingCancelled, JournalTexts::pairingCancelled);
    }
    if (next.replaceOffer && next.replaceOffer != now.replaceOffer)
        journal.record(EventCode::pairingOffered, JournalTexts::pairingOffered);
    if (next.checkingLink && !now.checkingLink)
        journal.record(EventCode::pairingBegun, JournalTexts::pairingBegun);
    const bool isNewPhase = next.pairing && (!now.pairing || next.pairing->phase != now.pairing->phase);
    if (isNewPhase) std::visit(PhaseRecorder{journal}, next.pairing->phase);
}

void recordSwitches(Journal& journal, const AppState& now, const AppState& next) {
    if (next.switches == now.switches) return;
    const auto state = [](bool isOn) { return std::string(isOn ? "on" : "off"); };
    journal.record(EventCode::switchesChanged, JournalTexts::switches(next.switches),
                   {{std::string(rawValue(Switch::accessibility)), state(next.switches.accessibility)},
                    {std::string(rawValue(Switch::screenRecording)), state(next.switches.screenRecording)}});
}

}  // namespace

void recordChange(Journal& journal, const AppState& now, const AppState& next) {
    recordSetup(journal, now, next);
    recordNode(journal, now, next);
    recordPairing(journal, now, next);
    recordSwitches(journal, now, next);
    if (next.endpoint && next.endpoint != now.endpoint)
        journal.record(EventCode::endpointPublished, JournalTexts::endpointPublished);
    if (now.endpoint && !next.endpoint)
        journal.record(EventCode::endpointWithdrawn, JournalTexts::endpointWithdrawn);
}

}  // namespace tarnik
