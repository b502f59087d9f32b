#include "app/model/AppState.h"

#include "app/texts/FailureTexts.h"

namespace tarnik {

Setup failedSetup(const InstallError& error) {
    const auto sentence = plainSentence(error);
    const bool saysCause = sentence == FailureTexts::diskFull || sentence == FailureTexts::notAllowed;
    return Setups::Failed{.text = describe(error),
                          .sentence = std::string(sentence),
                          .cause = saysCause ? std::nullopt : causeOf(error)};
}

bool AppState::needsAttention() const {
    return homeError || std::holds_alternative<Setups::Failed>(setup) ||
           std::holds_alternative<NodeStates::NotInstalled>(node) ||
           std::holds_alternative<NodeStates::WaitingForLink>(node) || pairing ||
           (!switches.allOn() && !managed.hidesSwitches);
}

}  // namespace tarnik
