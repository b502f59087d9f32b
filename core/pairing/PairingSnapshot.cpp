#include "core/pairing/PairingSnapshot.h"

namespace tarnik {

using namespace PairingPhases;

bool isInProgress(const PairingPhase& phase) {
    return !std::holds_alternative<Connected>(phase) && !std::holds_alternative<Ended>(phase);
}

std::string describe(const PairingPhase& phase) {
    struct Text {
        std::string operator()(const Ended& ended) const { return "ended (" + describe(ended.status) + ")"; }
        std::string operator()(const Starting&) const { return "starting"; }
        std::string operator()(const WaitingForYes&) const { return "waitingForYes"; }
        std::string operator()(const Connecting&) const { return "connecting"; }
        std::string operator()(const Connected&) const { return "connected"; }
    };
    return std::visit(Text{}, phase);
}

}  // namespace tarnik
