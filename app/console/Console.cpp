#include "app/console/Console.h"

#include <cstdlib>
#include <utility>

#include <unistd.h>

#include "core/foundation/Files.h"
#include "core/foundation/Http.h"
#include "core/foundation/OneLine.h"
#include "core/foundation/PropertyList.h"
#include "core/node/LaunchdTakeover.h"
#include "core/pairing/JoinLink.h"
#include "core/updates/ActivitySources.h"

namespace tarnik {
namespace {

constexpr const char* help =
    "a link from your chat pairs this computer; Enter or confirm answers the pairing prompt; cancel ends the "
    "pairing; switch accessibility|screen on|off; status; sample; quit";
constexpr const char* notALink =
    "That doesn't look like a link from tarnik. Copy the whole link from your chat and paste it here.";
constexpr const char* stillInstalling = "tarnik's helper is still installing. Try again in a moment.";
constexpr const char* expired = "This link has expired or was already used. Ask tarnik for a new one.";

constexpr std::string_view switchCommand = "switch ";
constexpr std::size_t longestMessage = 1000;
constexpr std::size_t shortestLink = 20;  // shorter lines are mistyped commands
constexpr Seconds logDrain = Seconds(1);

// The phase of a pairing run that is under way or has connected and goes on in the node's place.
std::string pairingWord(const PairingSession* session, std::optional<pid_t> pid) {
    if (session == nullptr || pid) return "none";
    const auto phase = session->phase();
    return std::holds_alternative<PairingPhases::Ended>(phase) ? "none" : describe(phase);
}

std::string pidWord(std::optional<pid_t> pid) {
    return pid ? std::to_string(*pid) : "none";
}

// What isn't known is "unknown", never "no".
std::string sampleLine(const ActivitySample& sample) {
    const auto yesNo = [](bool yes) { return yes ? "yes" : "no"; };
    const auto seconds =
        std::chrono::duration_cast<std::chrono::seconds>(sample.at.steady.time_since_epoch());
    return "at=" + std::to_string(seconds.count()) + " nodePID=" + pidWord(sample.nodePID) +
           " nodeHoldsAwake=" + (sample.nodeHoldsAwake ? yesNo(*sample.nodeHoldsAwake) : "unknown") +
           " holders=" + (sample.holders ? std::to_string(sample.holders->size()) : "unknown") +
           " driverPID=" + pidWord(sample.driverPID) + " driverCPUSeconds=" +
           (sample.driverCPUSeconds ? std::to_string(*sample.driverCPUSeconds) : "unknown") +
           " settingUp=" + yesNo(sample.settingUp) + " windowInUse=" + yesNo(sample.windowInUse);
}

// Stops an agent that a command-line install of the helper registered for this very home.
std::optional<LaunchdTakeover::Outcome> takeOverAgent(const NodeHome& home, const std::string& userFolder) {
    const auto path = LaunchdTakeover::plistPath(userFolder);
    const auto plan = LaunchdTakeover::plan(readFile(path, PropertyList::maxBytes), path, home, ::getuid());
    return LaunchdTakeover::execute(plan, LaunchdTakeover::Deps::production());
}

std::string describe(const LaunchdTakeover::Outcome& outcome) {
    return "took over the node's LaunchAgent: stopped " + std::to_string(outcome.stopped) + ", removed " +
           std::to_string(outcome.removed);
}

// Asks the service what the code stands for; none when it has no answer that we take.
std::optional<Url> fetchJoinURL(const std::string& code, const Url& webOrigin) {
    const auto answer = Http::fetch(JoinLink::answerURL(code, webOrigin).text());
    return answer ? JoinLink::joinURL(*answer, code) : std::nullopt;
}

}  // namespace

Console::Console(std::shared_ptr<ConsoleLoop> loop, Machine machine)
    : loop_(std::move(loop)),
      machine_(std::move(machine)),
      network_(SerialQueue::withThread("tarnik.network")),
      work_(SerialQueue::withThread("tarnik.console")),
      supervisor_(
          machine_.home, machine_.inherited, machine_.supervisor,
          [this](const std::string& text) { loop_->post([this, text] { output_.message(text); }); },
          [this](const NodeState& state) { loop_->post([this, state] { showState(state); }); }),
      driver_(loop_, output_, machine_.driver, [this](const std::optional<CuaDriverEndpoint>& endpoint) {
          work_->post([this, endpoint] { supervisor_.setEndpoint(endpoint); });
          loop_->post([this, endpoint] { showEndpoint(endpoint); });
      }) {}

Console::~Console() {
    network_->close();
    work_->close();
}

void Console::start(std::optional<std::string> link) {
    network_->post([this, link = std::move(link)] {
        if (const auto outcome = takeOverAgent(machine_.home, machine_.userFolder)) {
            loop_->post([this, text = describe(*outcome)] { output_.message(text); });
        }
        std::optional<InstallError> error;
        if (!machine_.home.isInstalled()) {
            const NodeInstaller installer(machine_.home, machine_.install, NodeInstallerDeps::production());
            const auto done = installer.install(
                {.text =
                     [this](const std::string& text) {
                         loop_->post([this, text] { output_.line("install", text); });
                     },
                 .bytes =
                     [this](std::int64_t received, std::optional<std::int64_t> total) {
                         loop_->post([this, received, total] { output_.progress(received, total); });
                     }});
            if (!done) error = done.error();
            const auto version = installer.installedVersion();
            if (done)
                loop_->post([this, version] { output_.line("install", "done " + version.value_or("")); });
        }
        loop_->post([this, error, link] { setupEnded(error, link); });
    });
}

void Console::setupEnded(const std::optional<InstallError>& error, const std::optional<std::string>& link) {
    setup_ = error ? Setup::failed : Setup::ready;
    if (quitting_) return;
    if (error) return refuse(describe(*error), Refusal::ends);
    if (inputEnded_) return quit();
    work_->post([this] { supervisor_.start(); });
    driver_.start();
    if (link) pair(*link, Refusal::ends);
}

void Console::refuse(const std::string& why, Refusal refusal) {
    showError(why);
    if (refusal == Refusal::isTold) return;
    exitStatus_ = EXIT_FAILURE;
    quit();
}

void Console::onEndOfInput() {
    inputEnded_ = true;
    if (setup_ != Setup::installing) quit();
}

void Console::onLine(const std::string& line) {
    if (line.empty()) return confirm(false);
    if (line == "confirm") return confirm(true);
    if (line == "cancel") return cancel();
    if (line == "status") return showStatus();
    if (line == "sample") return showSample();
    if (line.starts_with(switchCommand)) return setSwitch(line.substr(switchCommand.size()));
    if (line == "quit") return quit();
    if (line == "help") return output_.line("help", help);
    if (line.size() >= shortestLink || line.find("://") != std::string::npos)
        return pair(line, Refusal::isTold);
    showError("unknown command " + line + " (help lists them)");
}

void Console::onLineTooLong() {
    showError("that line is too long");
}

void Console::onSignal(int signal) {
    if (quitting_) ::_exit(128 + signal);
    quit();
}

void Console::quit() {
    if (std::exchange(quitting_, true)) return;
    loop_->closeInput();
    work_->post([this] {
        supervisor_.stop();
        if (machine_.supervisor.nodeLog) machine_.supervisor.nodeLog->drain(logDrain);
        driver_.shutdown();
        loop_->quit();
    });
}

void Console::setSwitch(const std::string& words) {
    struct Command {
        const char* words;
        Switch which;
        bool on;
    };
    constexpr Command commands[] = {{"accessibility on", Switch::accessibility, true},
                                    {"accessibility off", Switch::accessibility, false},
                                    {"screen on", Switch::screenRecording, true},
                                    {"screen off", Switch::screenRecording, false}};
    for (const auto& command : commands) {
        if (words == command.words) return driver_.set(command.which, command.on);
    }
    showError("that is: switch accessibility on, or off; switch screen on, or off");
}

void Console::pair(const std::string& link, Refusal refusal) {
    const auto code = JoinLink::code(link, machine_.webOrigin);
    if (!code) return refuse(notALink, refusal);
    if (setup_ != Setup::ready) return refuse(stillInstalling, refusal);
    if (checkingLink_ || pairing_) return refuse(describe(PairingFailure::busy), refusal);
    checkingLink_ = true;
    output_.line("link", "Checking the link…");
    network_->post([this, code = *code, refusal] {
        const auto joinURL = fetchJoinURL(code, machine_.webOrigin);
        loop_->post([this, joinURL, refusal] { linkChecked(joinURL, refusal); });
    });
}

void Console::linkChecked(const std::optional<Url>& joinURL, Refusal refusal) {
    checkingLink_ = false;
    if (quitting_) return;
    if (!joinURL) return refuse(expired, refusal);
    beginPairing(joinURL->text());
}

void Console::beginPairing(const std::string& joinURL) {
    work_->post([this, joinURL] {
        auto transcript = std::make_shared<PairingTranscript>();
        auto show = [this, weak = std::weak_ptr(loop_),
                     transcript](const PairingSession::Snapshot& snapshot) {
            const auto loop = weak.lock();
            if (loop) loop->post([this, transcript, snapshot] { showUpdate(snapshot, *transcript); });
        };
        auto session = supervisor_.beginPairing(joinURL, std::move(show));
        if (session) {
            session_ = *session;
        } else {
            loop_->post([this, text = describe(session.error())] { showError(text); });
        }
    });
}

// An empty line that answers nothing is only somebody leaning on the Enter key.
void Console::confirm(bool askedInWords) {
    work_->post([this, askedInWords] {
        if (session_ && session_->confirm()) return;
        if (askedInWords) loop_->post([this] { showError("there is nothing to confirm"); });
    });
}

void Console::cancel() {
    work_->post([this] {
        if (session_ && session_->isInProgress()) return session_->cancel();
        loop_->post([this] { showError("no pairing is in progress"); });
    });
}

void Console::showStatus() {
    work_->post([this] {
        const auto state = supervisor_.currentState();
        const auto pid = supervisor_.runningPID();
        const auto endpoint = supervisor_.currentEndpoint();
        driver_.post([this, state, pid, endpoint, session = session_](DriverHost& host) {
            loop_->post([this, state, pid, endpoint, session, driver = host.runningPID()] {
                const auto& switches = driver_.switches();
                const auto word = [](bool on) { return on ? "on" : "off"; };
                output_.line("status", "state=" + describe(state) + " pid=" + pidWord(pid) +
                                           " pairing=" + pairingWord(session.get(), pid) + " restarts=" +
                                           std::to_string(restarts_) + " driver=" + pidWord(driver) +
                                           " driverRestarts=" + std::to_string(driver_.failures()) +
                                           " switches=accessibility:" + word(switches.accessibility) +
                                           ",screen:" + word(switches.screenRecording) +
                                           " endpoint=" + (endpoint ? endpoint->socketPath : "none") +
                                           " home=" + machine_.home.path);
            });
        });
    });
}

void Console::showSample() {
    const OwnActivity own{.settingUp = setup_ != Setup::ready || checkingLink_ || pairing_};
    driver_.post([this, own](DriverHost& host) {
        auto sources = ActivitySources::production([this] { return supervisor_.runningPID(); },
                                                   [&host] { return host.runningPID(); });
        sources.holderPath = machine_.keepAwakePath;
        loop_->post([this, text = sampleLine(sources.sample(own))] { output_.line("sample", text); });
    });
}

void Console::showEndpoint(const std::optional<CuaDriverEndpoint>& endpoint) {
    output_.line("endpoint", endpoint ? endpoint->socketPath : "none");
}

void Console::showUpdate(const PairingSession::Snapshot& snapshot, PairingTranscript& transcript) {
    const auto news = transcript.update(snapshot);
    for (const auto& line : news.lines) output_.line("terminal", line);
    if (!news.phase) return;
    pairing_ = isInProgress(*news.phase);
    output_.line("pairing", describe(*news.phase));
    if (std::holds_alternative<PairingPhases::WaitingForYes>(*news.phase)) {
        output_.hint("Press Enter here to connect, or type cancel.");
    }
}

void Console::showState(const NodeState& state) {
    if (std::holds_alternative<NodeStates::Restarting>(state)) ++restarts_;
    output_.line("state", describe(state));
    if (std::holds_alternative<NodeStates::WaitingForLink>(state)) {
        output_.hint("Paste the link from your chat here.");
    }
}

void Console::showError(const std::string& text) {
    output_.line("error", oneLine(text, longestMessage));
}

}  // namespace tarnik
