#include "app/model/AppState.h"

#include "app/texts/FailureTexts.h"

namespace tarnik {

Setup failedSetup(const InstallError& error) {
    return Setups::Failed{.text = describe(error), .sentence = std::string(plainSentence(error))};
}

bool AppState::needsAttention() const {
    return homeError || std::holds_alternative<Setups::Failed>(setup) ||
           std::holds_alternative<NodeStates::NotInstalled>(node) ||
           std::holds_alternative<NodeStates::WaitingForLink>(node) || !switches.allOn() || pairing;
}

}  // namespace tarnik
