#include "app/model/TrayStatus.h"

#include "app/model/IsState.h"

namespace tarnik {
namespace {

bool isPairing(const AppState& state) {
    return state.checkingLink || (state.pairing && isInProgress(state.pairing->phase));
}

}  // namespace

HelperPresence helperPresence(const AppState& state) {
    const bool isExpected = !state.stopping && !state.homeError && is<Setups::Ready>(state.setup) &&
                            state.joined && !isPairing(state) && !is<NodeStates::NotInstalled>(state.node) &&
                            !is<NodeStates::WaitingForLink>(state.node);
    if (!isExpected) return HelperPresence::notExpected;
    return is<NodeStates::Running>(state.node) ? HelperPresence::running : HelperPresence::away;
}

TrayStatus trayStatus(const AppState& state, AbsenceLength absence) {
    if (state.stopping) return TrayStatus::working;
    if (state.homeError || is<Setups::Failed>(state.setup)) return TrayStatus::needsYou;
    if (is<Setups::Installing>(state.setup) || isPairing(state)) return TrayStatus::working;
    if (absence == AbsenceLength::tooLong) return TrayStatus::needsYou;
    if (is<NodeStates::Stopped>(state.node)) return TrayStatus::working;  // the supervisor reports next
    switch (helperPresence(state)) {
        case HelperPresence::notExpected: return TrayStatus::needsYou;
        case HelperPresence::away: return TrayStatus::working;
        case HelperPresence::running: return TrayStatus::connected;
    }
    return TrayStatus::working;
}

}  // namespace tarnik
