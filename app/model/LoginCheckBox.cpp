#include "app/model/LoginCheckBox.h"

#include "app/texts/LoginTexts.h"
#include "app/texts/Translation.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

using WindowParts::CheckBox;
using WindowParts::Message;

constexpr std::size_t longestLine = 300;  // characters

CheckBox::State shown(LoginItemState state) {
    switch (state) {
        case LoginItemState::off: return CheckBox::State::off;
        case LoginItemState::on: return CheckBox::State::on;
        case LoginItemState::waiting: return CheckBox::State::waiting;
    }
    return CheckBox::State::off;
}

}  // namespace

std::optional<CheckBox> loginCheckBox(const AppState& state) {
    if (!state.startAtLogin) return std::nullopt;
    const auto system = *state.startAtLogin;
    const bool isWaiting = system == LoginItemState::waiting;
    const bool isLocked = state.managed.locksStartAtLogin;
    const auto free = isWaiting ? LoginTexts::allowInSettings : LoginTexts::startAtLogin;
    return CheckBox{
        .state = shown(system),
        .title = translated(isLocked ? LoginTexts::lockedStartAtLogin : free),
        .intent = {.kind = UserIntent::Kind::setStartAtLogin, .startsAtLogin = system != LoginItemState::on},
        .enabled = !state.stopping && !isLocked};
}

std::optional<Message> loginMessage(const AppState& state) {
    if (!state.startAtLoginFailure || state.stopping) return std::nullopt;
    Message message{.kind = Message::Kind::refusal, .text = translated(LoginTexts::choiceFailed)};
    const auto words = sanitizedLine(*state.startAtLoginFailure, longestLine);
    if (!words.empty()) message.cause = words;
    return message;
}

}  // namespace tarnik
