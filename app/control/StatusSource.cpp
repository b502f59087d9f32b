#include "app/control/StatusSource.h"

#include <algorithm>
#include <utility>

#include "app/journal/Explanation.h"
#include "app/model/WindowContent.h"
#include "app/texts/FailureTexts.h"
#include "app/texts/StatusTexts.h"

namespace tarnik {
namespace {

using Section = WindowContent::Section;
using Subject = Explanation::Subject;
using Explanations = std::vector<Explanation>;

std::string_view stateOf(Section section) {
    switch (section) {
        case Section::stopping: return ConnectionState::stopping;
        case Section::replaceOffer: return ConnectionState::offer;
        case Section::pairing: return ConnectionState::pairing;
        case Section::connected: return ConnectionState::connected;
        case Section::reconnecting: return ConnectionState::reconnecting;
        case Section::problem: return ConnectionState::problem;
        case Section::installing: return ConnectionState::installing;
        case Section::link: return ConnectionState::link;
    }
    return ConnectionState::problem;
}

std::optional<std::string> sentenceAbout(const Explanations& explanations, Subject subject) {
    const auto found = std::ranges::find(explanations, subject, &Explanation::subject);
    return found != explanations.end() ? std::optional(found->sentence) : std::nullopt;
}

// Returns the first cause: a missing home prevents the install, and a missing install prevents the helper.
std::optional<std::string> reasonOf(const AppState& state, Section section,
                                    const Explanations& explanations) {
    if (state.homeError) return state.homeError;
    if (section == Section::connected || section == Section::stopping) return std::nullopt;
    if (section == Section::link) return sentenceAbout(explanations, Subject::pairing);  // the last refusal
    const bool isReconnecting = section == Section::reconnecting;  // whatever the last link did
    const auto second = isReconnecting ? Subject::helper : Subject::pairing;
    const auto third = isReconnecting ? Subject::pairing : Subject::helper;
    for (const auto subject : {Subject::install, second, third}) {
        if (auto sentence = sentenceAbout(explanations, subject)) return sentence;
    }
    return std::nullopt;
}

// The heading of the link page is a request, and that of a prompt is a question. A status states what is the
// case.
std::string sentenceOf(const AppState& state, const WindowContent& content) {
    if (content.section == Section::link) return StatusTexts::noAccount;
    const bool asks = content.section == Section::pairing && state.pairing &&
                      std::holds_alternative<PairingPhases::WaitingForYes>(state.pairing->phase);
    return asks ? StatusTexts::promptWaits : content.headingInEnglish;
}

// The window shows the outcome of a pairing until the user dismisses it. The status doesn't.
Status::Connection connectionOf(AppState state, const Url& webOrigin, const Explanations& explanations) {
    if (state.pairing && !isInProgress(state.pairing->phase)) state.pairing.reset();
    const auto content = WindowContent::of(state, {.webOrigin = webOrigin});
    const auto sentence = sentenceOf(state, content);
    auto reason = reasonOf(state, content.section, explanations);
    // An explanation may begin with the window's heading.
    if (reason && reason->starts_with(sentence + " ")) reason->erase(0, sentence.size() + 1);
    return {.state = std::string(stateOf(content.section)),
            .sentence = sentence,
            .reason = std::move(reason),
            .joined = state.joined};
}

struct HelperWord {
    std::string_view operator()(const NodeStates::Restarting&) const { return HelperState::restarting; }
    std::string_view operator()(const NodeStates::NotInstalled&) const { return HelperState::notInstalled; }
    std::string_view operator()(const NodeStates::WaitingForLink&) const {
        return HelperState::waitingForLink;
    }
    std::string_view operator()(const NodeStates::Pairing&) const { return HelperState::pairing; }
    std::string_view operator()(const NodeStates::Running&) const { return HelperState::running; }
    std::string_view operator()(const NodeStates::Stopped&) const { return HelperState::stopped; }
};

std::string_view driverWord(const AppState& state, const ChildHistory& driver, bool hasDriver) {
    if (!hasDriver) return DriverState::absent;
    if (state.endpoint) return DriverState::ready;
    if (!state.switches.allOn()) return DriverState::off;
    if (driver.pid) return DriverState::starting;
    return driver.nextTry ? DriverState::restarting : DriverState::stopped;
}

std::string switchWord(SwitchStatus status) {
    switch (status) {
        case SwitchStatus::on: return std::string(SwitchState::on);
        case SwitchStatus::mayBeStale: return std::string(SwitchState::stale);
        case SwitchStatus::notYet: break;
    }
    return std::string(SwitchState::off);
}

Status::Install installOf(const AppState& state) {
    if (const auto* failed = std::get_if<Setups::Failed>(&state.setup)) {
        return {.state = std::string(InstallState::failed),
                .text = withCause(withDescription(failed->sentence, failed->text), failed->cause)};
    }
    if (std::holds_alternative<Setups::Ready>(state.setup)) return {.state = std::string(InstallState::done)};
    const auto& text = std::get<Setups::Installing>(state.setup).text;
    Status::Install install{.state = std::string(InstallState::running)};
    if (!text.empty()) install.text = text;
    if (!state.download) return install;
    install.receivedBytes = state.download->received;
    install.totalBytes = state.download->total;
    return install;
}

}  // namespace

Status StatusSource::at(const AppState& state, WallTime now) const {
    const auto explanations = explain(events(), now);
    const auto past = history();
    std::string_view update = UpdateState::none;
    if (!checksForUpdates()) update = UpdateState::unavailable;
    if (past.waitingUpdate) update = UpdateState::waiting;
    auto running = program;
    running.since = past.since;
    return {.program = std::move(running),
            .connection = connectionOf(state, webOrigin, explanations),
            .helper = {.state = std::string(std::visit(HelperWord(), state.node)),
                       .version = helperVersion(),
                       .history = past.helper,
                       .reason = sentenceAbout(explanations, Subject::helper)},
            .driver = {.state = std::string(driverWord(state, past.driver, hasDriver)),
                       .history = past.driver,
                       .reason = sentenceAbout(explanations, Subject::driver)},
            .switches = {.accessibility = switchWord(state.status(Switch::accessibility)),
                         .screenRecording = switchWord(state.status(Switch::screenRecording))},
            .update = {.state = std::string(update), .version = past.waitingUpdate},
            .install = installOf(state),
            .folders = folders,
            .policy = policy};
}

}  // namespace tarnik
