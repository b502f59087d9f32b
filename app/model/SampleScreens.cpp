#include "app/model/SampleScreens.h"

#include <chrono>
#include <ctime>
#include <utility>

#include "app/texts/LinkTexts.h"

namespace tarnik {
namespace {

constexpr std::string_view account =
    "This link connects this Mac to ada@example.com.\n\n"
    "tarnik will be able to run commands and work in apps on this Mac.\n\n";
constexpr std::string_view goodLink = "https://tarnik.invalid/c/AB12-CD34";

constexpr std::string_view prompt = "Press Enter to connect it, or Ctrl-C to leave things as they are.\n";

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

AppState switched(AppState state, SwitchSnapshot switches) {
    state.switches = switches;
    state.accessibilityWasOn = switches.accessibility;
    return state;
}

AppState joined(NodeState node = NodeStates::Running{}) {
    auto state = ready(node);
    state.joined = true;
    state.helper.version = "2026.1.1";
    if (state.node == NodeState(NodeStates::Running{}))
        state.helper.since = sampleTime() - std::chrono::minutes(15);
    return state;
}

// Returns a state in which the desktop driver is ready.
AppState connected() {
    auto state = switched(joined(), {.accessibility = true, .screenRecording = true});
    state.endpoint = CuaDriverEndpoint{};
    state.checksForUpdates = true;
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
    state.pairing = {.sessionID = "00000000-0000-4000-8000-000000000000",
                     .phase = phase,
                     .text = text,
                     .displayText = std::move(text)};
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
    return text + std::string(account) + std::string(prompt);
}

// The pairing has connected, and the helper runs.
AppState paired() {
    auto state = pairing(PairingPhases::Connected{}, "");
    state.node = NodeStates::Running{};
    state.joined = true;
    return state;
}

AppState starting() {
    auto state = connected();
    state.helper = {};
    state.endpoint.reset();
    return state;
}

AppState updateWaiting() {
    auto state = connected();
    state.waitingUpdate = "2026.2";
    return state;
}

AppState withoutDriver() {
    auto state = connected();
    state.hasDriver = false;
    state.endpoint.reset();
    return state;
}

AppState reconnectingAtStart() {
    auto state = installing("");
    state.joined = true;
    return state;
}

constexpr std::string_view logEnd =
    "14:52:05 gateway: starting\n"
    "14:52:07 gateway: connecting to tarnik.invalid\n"
    "14:52:07 gateway: connected\n"
    "14:52:09 Error: EACCES: permission denied, open 'state/session.json'\n"
    "14:52:09 exiting with status 3\n";

// The helper has failed several times in a row.
AppState inTrouble(HelperTrouble trouble, std::string lastLines) {
    auto state = switched(joined(NodeStates::Restarting{Seconds(16)}),
                          {.accessibility = true, .screenRecording = true});
    trouble.at = sampleTime() - std::chrono::seconds(12);
    if (!trouble.isRunning) trouble.nextTry = sampleTime() + std::chrono::seconds(8);
    state.helper.trouble = std::move(trouble);
    state.helper.lastLines = std::move(lastLines);
    return state;
}

// The helper runs again, but may fail again.
AppState afterTrouble() {
    auto state = inTrouble({.times = 5, .last = "exit 3", .isRunning = true}, std::string(logEnd));
    state.node = NodeStates::Running{};
    state.helper.since = sampleTime();
    return state;
}

AppState listedAtLogin(LoginItemState login) {
    auto state = connected();
    state.startAtLogin = login;
    return state;
}

// The organisation locks the start at login and hides the switches.
AppState managed() {
    auto state = connected();
    state.startAtLogin = LoginItemState::on;
    state.managed = {.locksStartAtLogin = true, .hidesSwitches = true};
    return state;
}

AppState withoutPermission() {
    auto state = unjoined();
    state.managed.allowsPairing = false;
    return state;
}

constexpr std::string_view report =
    "This is the report of tarnik. tarnik never sends it. Codes, keys, addresses and names are hidden where\n"
    "tarnik recognises them. Read the report before you pass it on.\n\n"
    "== Versions ==\n"
    "tarnik 2026.1.1\n"
    "helper 2026.1.1, Node.js v24.22.1\n\n"
    "== Doctor ==\n"
    "ok       The helper is installed.\n"
    "ok       The server answers.\n"
    "problem  The helper stopped 5 times in a row, last with exit 3, 12 s ago.\n\n"
    "== Status ==\n"
    "This machine belongs to an account. The helper starts again in 8 s.\n\n"
    "== End of the helper's log ==\n"
    "14:52:05 gateway: starting\n"
    "14:52:07 gateway: connecting to <address>\n"
    "14:52:09 Error: EACCES: permission denied, open 'state/session.json'\n"
    "14:52:09 exiting with status 3\n";

}  // namespace

// In the local time zone, because the window shows local times.
WallTime sampleTime() {
    std::tm time{};
    time.tm_year = 2026 - 1900;
    time.tm_mday = 15;
    time.tm_hour = 14;
    time.tm_min = 52;
    time.tm_isdst = -1;
    return std::chrono::system_clock::from_time_t(std::mktime(&time));
}

std::vector<SampleScreen> sampleScreens() {
    using namespace PairingPhases;
    using Trouble = HelperTrouble;
    const std::string shown = std::string(account) + std::string(prompt);
    const std::string asked = "Checking the link... 100%\n" + shown;
    const AppState::Download part{.received = 18'100'000, .total = 40'100'000};
    const AppState::Download unknown{.received = 18'100'000, .total = std::nullopt};
    const HttpError offline{.kind = HttpError::Kind::unreachable, .text = "Couldn't connect to server"};
    auto unchecked = withMessage(unjoined(), LinkTexts::linkExpired);
    unchecked.linkCause = FailureCause::captivePortal;
    auto halfStale = switched(joined(), {.screenRecording = true});
    return {
        {"getting-ready", installing("")},
        {"installing", installing("Downloading tarnik's helper…")},
        {"installing-download", installing("Downloading Node.js v24.22.1…", part)},
        {"installing-download-unknown-size", installing("Downloading tarnik's helper…", unknown)},
        {"installing-refused-link",
         withMessage(installing("Downloading Node.js v24.22.1…", part), LinkTexts::stillInstalling)},
        {"install-failed", failed(InstallFailure{.kind = InstallFailure::Kind::download, .what = "Node.js"})},
        {"install-failed-cause", failed(offline)},
        {"install-failed-long", failed(InstallFailure{InstallFailure::Kind::extract, tarOutput()})},
        {"helper-missing", ready(NodeStates::NotInstalled{})},
        {"home-error",
         withoutHome("The node folder must be a full path (starting with /), not tarnik-node.")},
        {"connect", unjoined()},
        {"checking", checking(unjoined()), {}, {}, goodLink},
        {"refused-link", withMessage(unjoined(), LinkTexts::notALink), {}, {}, "https://tarnik.invalid/c"},
        {"expired-link", withMessage(unjoined(), LinkTexts::linkExpired), {}, {}, goodLink},
        {"expired-link-cause", std::move(unchecked), {}, {}, goodLink},
        {"pairing-reading", pairing(Starting{}, "")},
        {"pairing-confirm", pairing(WaitingForYes{}, shown)},
        {"pairing-progress", pairing(WaitingForYes{}, asked)},
        {"pairing-refused-link",
         withMessage(pairing(WaitingForYes{}, shown), describe(PairingFailure::busy))},
        {"pairing-confirm-long", pairing(WaitingForYes{}, longText())},
        {"pairing-connecting", pairing(Connecting{}, shown)},
        {"pairing-connected", paired()},
        {"pairing-failed", pairing(Ended{ExitStatus::exited(1)}, shown + "\nThe link was already used.\n")},
        {"connected-switches-off", joined()},
        {"connected-one-switch", switched(joined(), {.accessibility = true})},
        {"connected", connected()},
        {"connected-starting", starting()},
        {"connected-update-waiting", updateWaiting()},
        {"connected-no-driver", withoutDriver()},
        {"connected-no-tray", connected(), std::nullopt, WindowSetting::Closing::endsConnection},
        {"connected-stale-switch", stale()},
        {"connected-stale-switch-and-screen", std::move(halfStale)},
        {"connected-refused-link", withMessage(joined(), LinkTexts::notALink)},
        {"connected-checking", checking(joined())},
        {"reconnecting-first", joined(NodeStates::Restarting{Seconds(4)})},
        {"reconnecting-at-start", reconnectingAtStart()},
        {"reconnecting-trouble", inTrouble({.times = 5, .last = "exit 3"}, std::string(logEnd))},
        {"reconnecting-not-started",
         inTrouble({.kind = Trouble::Kind::notStarted, .times = 3, .last = "posix_spawn: Permission denied"},
                   "")},
        {"connected-after-trouble", afterTrouble()},
        {"start-at-login-off", listedAtLogin(LoginItemState::off)},
        {"start-at-login-on", listedAtLogin(LoginItemState::on)},
        {"start-at-login-waiting", listedAtLogin(LoginItemState::waiting)},
        {"managed", managed()},
        {"pairing-not-allowed", withoutPermission()},
        {"replace-offer", offered()},
        {"stopping", stopping()},
        {"details", unjoined(), {}, {}, {}, report},
        {"alert", unjoined(), Relocation::runHereMessage({.bundlePath = "/Users/ada/Downloads/tarnik.app"})},
    };
}

}  // namespace tarnik
