#include "app/model/ProgramActivity.h"

#include <variant>

namespace tarnik {

Activity activityOf(const AppState& state) {
    const bool helperRuns = std::holds_alternative<NodeStates::Running>(state.node) ||
                            std::holds_alternative<NodeStates::Pairing>(state.node) ||
                            std::holds_alternative<NodeStates::Restarting>(state.node);
    const bool isInstalling = std::holds_alternative<Setups::Installing>(state.setup) && !state.homeError;
    return helperRuns || isInstalling || state.endpoint || state.stopping ? Activity::busy : Activity::idle;
}

}  // namespace tarnik
