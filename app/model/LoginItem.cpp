#include "app/model/LoginItem.h"

#include <utility>

#include "app/texts/FailureTexts.h"

namespace tarnik {
namespace {

// Only this choice is stored, because without a choice the launch adds the program, as after the choice "on".
constexpr const char* turnedOffKey = "StartAtLoginWasTurnedOff";

bool agrees(LoginItemState state, LoginItemChoice choice) {
    return (state == LoginItemState::off) == (choice == LoginItemChoice::off);
}

}  // namespace

LoginItem::LoginItem(Deps deps) : deps_(std::move(deps)) {}

// A list that says "on" although the user turned it off here was changed in the system's settings later.
bool LoginItem::isAddedAtLaunch(LoginItemState system, bool turnedOff) {
    return system != LoginItemState::on && !turnedOff;
}

void LoginItem::ensureRegistered() {
    const auto& managed = deps_.managed;
    if (!managed) return request({.registers = true});
    if (!managed->isForced()) return request({.registers = managed->value});
    request({.forced = managed->value ? LoginItemChoice::on : LoginItemChoice::off});
}

void LoginItem::refresh() {
    dismissFailure();
    request({});
}

void LoginItem::choose(LoginItemChoice choice) {
    if (!deps_.service.choose || (deps_.managed && deps_.managed->isForced())) return;
    dismissFailure();
    if (choice == LoginItemChoice::off) {
        deps_.defaults.setFlag(turnedOffKey);
    } else {
        deps_.defaults.clearFlag(turnedOffKey);
    }
    const bool isWaiting = state_.system == LoginItemState::waiting;
    if (choice == LoginItemChoice::on && isWaiting && deps_.service.openSettings)
        return deps_.service.openSettings();
    request({.choice = choice});
}

void LoginItem::dismissFailure() {
    change({.system = state_.system, .failure = {}});
}

void LoginItem::request(const Work& more) {
    if (!deps_.service.state) return;
    if (!next_) next_ = Work();
    next_->registers |= more.registers;
    if (more.choice) next_->choice = more.choice;
    if (more.forced) next_->forced = more.forced;
    if (!working_) startWork();
}

void LoginItem::startWork() {
    auto work = *std::exchange(next_, std::nullopt);
    work.registers = work.registers && !deps_.defaults.flag(turnedOffKey);
    const auto done = guard_.wrap([this, work](const State& state) { ended(work, state); });
    working_ = deps_.detach("tarnik.login-item", [work, service = deps_.service, post = deps_.post, done] {
        post([done, state = perform(service, work)] { done(state); });
    });
    if (working_ || !work.choice) return;
    change({.system = state_.system, .failure = std::string(FailureTexts::tooBusy)});
}

// Runs on a background thread.
LoginItem::State LoginItem::perform(const LoginItemService& service, const Work& work) {
    const auto wanted = work.forced ? work.forced : work.choice;
    if (work.forced) {
        const auto state = service.state();
        if (!service.choose || agrees(state, *wanted)) return {.system = state, .failure = {}};
    }
    if (!wanted) {
        // Registering fails most often because the user removed the item from the list on purpose.
        if (work.registers && isAddedAtLaunch(service.state(), false)) (void)service.registerItem();
        return {.system = service.state(), .failure = {}};
    }
    const auto done = service.choose(*wanted);
    const auto state = service.state();
    // The list decides: the system may report a failure and wait for the user.
    if (agrees(state, *wanted)) return {.system = state, .failure = {}};
    return {.system = state, .failure = done ? std::string() : done.error()};
}

void LoginItem::ended(const Work& work, State state) {
    working_ = false;
    if (state.failure) deps_.log("the start at login wasn't changed (" + *state.failure + ")");
    if (!work.choice) state.failure = state_.failure;  // a reading that was requested during a choice
    change(state);
    if (next_) startWork();
}

void LoginItem::change(const State& state) {
    if (state == state_) return;
    state_ = state;
    deps_.onState(state_);
}

}  // namespace tarnik
