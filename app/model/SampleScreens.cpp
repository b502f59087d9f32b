#include "app/model/SampleScreens.h"

#include <utility>

#include "app/texts/LinkTexts.h"

namespace tarnik {
namespace {

constexpr std::string_view prompt =
    "This link connects this Mac to ada@example.com.\n\n"
    "tarnik will be able to run commands and work in apps on this Mac.\n\n"
    "Press Enter to connect it, or Ctrl-C to leave things as they are.\n";

AppState ready(NodeState node) {
    AppState state;
    state.setup = Setups::Ready{};
    state.node = node;
    return state;
}

AppState installing(std::string text, std::optional<AppState::Download> download = std::nullopt) {
    AppState state;
    state.setup = Setups::Installing{std::move(text)};
    state.download = download;
    return state;
}

AppState failed(const InstallError& error) {
    AppState state;
    state.setup = failedSetup(error);
    return state;
}

AppState withoutHome(std::string text) {
    AppState state;
    state.homeError = std::move(text);
    return state;
}

AppState unjoined() {
    return ready(NodeStates::WaitingForLink{});
}

AppState joined(NodeState node = NodeStates::Running{}) {
    auto state = ready(node);
    state.joined = true;
    return state;
}

AppState withMessage(AppState state, std::string_view message) {
    state.linkMessage = message;
    return state;
}

AppState checking(AppState state) {
    state.checkingLink = true;
    return withMessage(std::move(state), LinkTexts::checkingLink);
}

AppState pairing(PairingPhase phase, std::string text) {
    auto state = ready(NodeStates::Pairing{});
    state.pairing = {
        .sessionID = "00000000-0000-4000-8000-000000000000", .phase = phase, .text = std::move(text)};
    return state;
}

AppState switched(AppState state, SwitchSnapshot switches) {
    state.switches = switches;
    state.accessibilityWasOn = switches.accessibility;
    return state;
}

AppState stale() {
    auto state = joined();
    state.accessibilityWasOn = true;
    return state;
}

AppState offered() {
    auto state = joined();
    const std::string code(22, 'A');
    state.replaceOffer = {.text = code, .link = "tarnik://connect?code=" + code};
    return state;
}

AppState stopping() {
    auto state = joined();
    state.stopping = true;
    return state;
}

// Returns a text that is too long for the window.
std::string tarOutput() {
    std::string words;
    for (int file = 1; file <= 40; ++file)
        words += "tar: lib/node_modules/openclaw/dist/chunk-" + std::to_string(file) +
                 ".mjs: Cannot write: No space left on device\n";
    return words + "tar: Exiting with failure status due to previous errors";
}

// Returns a text that is too long for the window.
std::string longText() {
    std::string text;
    for (int line = 1; line <= 600; ++line)
        text += "line " + std::to_string(line) + " of what the helper says while it reads the link\n";
    return text + std::string(prompt);
}

}  // namespace

std::vector<SampleScreen> sampleScreens() {
    using namespace PairingPhases;
    const std::string shown(prompt);
    const AppState::Download part{.received = 18'100'000, .total = 40'100'000};
    const AppState::Download unknown{.received = 18'100'000, .total = std::nullopt};
    auto starting = installing("");
    starting.joined = true;
    auto failing = joined(NodeStates::Restarting{Seconds(16)});
    const auto now = std::chrono::system_clock::now();
    failing.helper.trouble = {.times = 5,
                              .last = "exit 3",
                              .at = now - std::chrono::seconds(12),
                              .nextTry = now + std::chrono::seconds(8)};
    auto halfStale = switched(joined(), {.screenRecording = true});

    return {
        {"getting-ready", installing("")},
        {"installing", installing("Downloading tarnik's helper…")},
        {"installing-download", installing("Downloading Node.js v24.22.1…", part)},
        {"installing-download-unknown-size", installing("Downloading tarnik's helper…", unknown)},
        {"installing-refused-link",
         withMessage(installing("Downloading Node.js v24.22.1…", part), LinkTexts::stillInstalling)},
        {"install-failed", failed(InstallFailure{.kind = InstallFailure::Kind::download, .what = "Node.js"})},
        {"install-failed-long", failed(InstallFailure{InstallFailure::Kind::extract, tarOutput()})},
        {"helper-missing", ready(NodeStates::NotInstalled{})},
        {"home-error",
         withoutHome("The node folder must be a full path (starting with /), not tarnik-node.")},
        {"connect", unjoined()},
        {"checking", checking(unjoined())},
        {"refused-link", withMessage(unjoined(), LinkTexts::notALink)},
        {"expired-link", withMessage(unjoined(), LinkTexts::linkExpired)},
        {"pairing-reading", pairing(Starting{}, "")},
        {"pairing-confirm", pairing(WaitingForYes{}, shown)},
        {"pairing-refused-link",
         withMessage(pairing(WaitingForYes{}, shown), describe(PairingFailure::busy))},
        {"pairing-long-text", pairing(WaitingForYes{}, longText())},
        {"pairing-connecting", pairing(Connecting{}, shown)},
        {"pairing-connected", pairing(Connected{}, shown)},
        {"pairing-failed", pairing(Ended{ExitStatus::exited(1)}, shown + "\nThe link was already used.\n")},
        {"connected-switches-off", joined()},
        {"connected-one-switch", switched(joined(), {.accessibility = true})},
        {"connected", switched(joined(), {.accessibility = true, .screenRecording = true})},
        {"connected-stale-switch", stale()},
        {"connected-stale-switch-and-screen", std::move(halfStale)},
        {"connected-refused-link", withMessage(joined(), LinkTexts::notALink)},
        {"connected-checking", checking(joined())},
        {"reconnecting", joined(NodeStates::Restarting{Seconds(4)})},
        {"reconnecting-at-start", std::move(starting)},
        {"reconnecting-again", std::move(failing)},
        {"replace-offer", offered()},
        {"stopping", stopping()},
        {"alert", unjoined(), Relocation::runHereMessage({.bundlePath = "/Users/ada/Downloads/tarnik.app"})},
    };
}

}  // namespace tarnik
