#include "app/model/AppState.h"

namespace tarnik {

bool AppState::needsAttention() const {
    return homeError || std::holds_alternative<Setups::Failed>(setup) ||
           std::holds_alternative<NodeStates::NotInstalled>(node) ||
           std::holds_alternative<NodeStates::WaitingForLink>(node) || !switches.allOn() || pairing;
}

}  // namespace tarnik
