#include "app/console/Console.h"

#include <cstdlib>
#include <utility>

#include <unistd.h>

#include "app/CommandLine.h"
#include "app/ProgramStart.h"
#include "app/console/WindowLines.h"
#include "app/failures/FailureCause.h"
#include "app/texts/ConsoleTexts.h"
#include "app/texts/FailureTexts.h"
#include "core/foundation/TextCleanup.h"
#include "core/node/NodeInstaller.h"
#include "core/pairing/PairingSession.h"

namespace tarnik {
namespace {

constexpr std::string_view switchCommand = "switch ";
constexpr std::size_t longestMessage = 1000;

std::string pidText(std::optional<pid_t> pid) {
    return pid ? std::to_string(*pid) : "none";
}

std::string onOff(bool on) {
    return on ? "on" : "off";
}

// Prints "unknown" for a value that is absent.
std::string sampleLine(const ActivitySample& sample) {
    const auto yesNo = [](bool yes) { return yes ? "yes" : "no"; };
    const auto seconds =
        std::chrono::duration_cast<std::chrono::seconds>(sample.at.steady.time_since_epoch());
    return "at=" + std::to_string(seconds.count()) + " nodePID=" + pidText(sample.nodePID) +
           " nodeHoldsAwake=" + (sample.nodeHoldsAwake ? yesNo(*sample.nodeHoldsAwake) : "unknown") +
           " holders=" + (sample.holders ? std::to_string(sample.holders->size()) : "unknown") +
           " driverPID=" + pidText(sample.driverPID) + " driverCPUSeconds=" +
           (sample.driverCPUSeconds ? std::to_string(*sample.driverCPUSeconds) : "unknown") +
           " settingUp=" + yesNo(sample.settingUp) + " windowInUse=" + yesNo(sample.windowInUse);
}

// Returns the phase of the pairing, or "none" if it has ended or the node runs again.
std::string pairingText(const AppState& state, std::optional<pid_t> node) {
    if (!state.pairing || node) return "none";
    const auto& phase = state.pairing->phase;
    return std::holds_alternative<PairingPhases::Ended>(phase) ? "none" : describe(phase);
}

}  // namespace

Console::Console(MainThread mainThread, ConsoleOutput& output, SimulatedSwitches& switches,
                 std::shared_ptr<AppModel> model, std::function<void()> closeInput)
    : mainThread_(mainThread),
      output_(output),
      switches_(switches),
      model_(std::move(model)),
      closeInput_(std::move(closeInput)),
      feed_(model_, std::move(mainThread), [this](const AppState& state) { showNews(state); }) {
    model_->observe(
        guard_.wrap([this](const AppState& now, const AppState& next) { willChange(now, next); }));
}

Console::~Console() = default;

Presentation Console::presentation(std::function<void()> end) {
    return {.makeStatusItem = [this](const MenuContent& menu) { output_.line("menu", menuLine(menu)); },
            .showWindow = [this] { showWindow(); },
            .showAlert = [this](const std::string& title,
                                const std::string& text) { output_.line("alert", title + ": " + text); },
            .fillLinkField = [](const std::string&) {},  // the terminal still shows the link
            .refuse =
                [](const std::string& why, const std::function<void()>& seen) {
                    printError(why);
                    seen();
                },
            .end =
                [this, end = std::move(end)](int status) {
                    if (status != EXIT_SUCCESS) exitStatus_ = status;
                    end();
                }};
}

void Console::later(std::function<void()> task) {
    mainThread_.post(guard_.wrap(std::move(task)));
}

void Console::willChange(const AppState& now, const AppState& next) {
    if (next.setup != now.setup) showSetup(next.setup, !installing_.empty());
    if (next.download && next.download != now.download) output_.progress(*next.download);
    if (next.switches != now.switches) {
        output_.line("switches", "accessibility=" + onOff(next.switches.accessibility) +
                                     " screenRecording=" + onOff(next.switches.screenRecording));
    }
    showLink(now, next);
    if (next.pairing && next.pairing != now.pairing) showPairing(*next.pairing);
    if (now.pairing && !next.pairing) output_.line("pairing", "none");
    if (next.node != now.node) {
        if (std::holds_alternative<NodeStates::Restarting>(next.node)) ++restarts_;
        output_.line("state", describe(next.node));
        if (std::holds_alternative<NodeStates::WaitingForLink>(next.node)) {
            output_.hint(ConsoleTexts::pasteLink);
        }
    }
    if (next.endpoint != now.endpoint) {
        if (!next.endpoint && next.switches.allOn() && !next.stopping) ++driverRestarts_;
        output_.line("endpoint", next.endpoint ? next.endpoint->socketPath : "none");
    }
}

void Console::showSetup(const Setup& setup, bool wasInstalling) {
    if (const auto* installing = std::get_if<Setups::Installing>(&setup)) {
        installing_ = installing->text;
        return output_.line("install", installing_);
    }
    if (const auto* failed = std::get_if<Setups::Failed>(&setup)) {
        showError(withDescription(failed->sentence, failed->text));
        if (failed->cause) output_.line("cause", describe(*failed->cause));
        return later([this] { fail(); });
    }
    if (wasInstalling) {
        const NodeInstaller installed(*model_->home(), {}, {});
        output_.line("install", "done " + installed.installedVersion().value_or(""));
    }
    later([this] {
        if (inputEnded_) return quit();
        if (!startLink_) return;
        startLinkGiven_ = true;
        pair(*startLink_);
    });
}

void Console::showLink(const AppState& now, const AppState& next) {
    if (next.linkMessage && next.linkMessage != now.linkMessage) {
        answeredLink_ = true;
        if (next.checkingLink) {
            output_.line("link", *next.linkMessage);
        } else {
            showError(*next.linkMessage);
            if (next.linkCause) output_.line("cause", describe(*next.linkCause));
        }
    }
    if (next.replaceOffer && next.replaceOffer != now.replaceOffer) {
        answeredLink_ = true;
        output_.line("offer", WindowContent::of(next, model_->webOrigin()).heading);
        output_.hint(ConsoleTexts::answerOffer);
    }
    if (!startLinkGiven_ || next.checkingLink) return;
    if (next.pairing || next.replaceOffer) startLinkGiven_ = false;  // accepted
    if (startLinkGiven_ && next.linkMessage) {
        startLinkGiven_ = false;
        later([this] { fail(); });
    }
}

void Console::showPairing(const PairingSession::Snapshot& snapshot) {
    if (std::exchange(sessionID_, snapshot.sessionID) != snapshot.sessionID) transcript_ = {};
    const auto news = transcript_.update(snapshot);
    for (const auto& line : news.lines) output_.line("terminal", line);
    if (!news.phase) return;
    output_.line("pairing", describe(*news.phase));
    if (std::holds_alternative<PairingPhases::WaitingForYes>(*news.phase)) {
        output_.hint(ConsoleTexts::answerPrompt);
    }
}

void Console::showWindow() {
    shown_ = WindowContent::of(model_->state(), model_->webOrigin());
    for (const auto& line : windowLines(*shown_)) output_.line("window", line);
}

void Console::showNews(const AppState& state) {
    if (!shown_) return;
    auto content = WindowContent::of(state, model_->webOrigin());
    const auto news = content.newsSince(*shown_);
    shown_ = std::move(content);
    if (!news.empty()) output_.line("window", news);
}

void Console::onEndOfInput() {
    inputEnded_ = true;
    if (!std::holds_alternative<Setups::Installing>(model_->state().setup)) quit();
}

void Console::onLine(const std::string& line) {
    if (line.empty()) return confirm(false);
    if (line == "confirm") return confirm(true);
    if (line == "cancel") return cancel();
    if (line == "replace") {
        if (const auto offer = model_->state().replaceOffer) {
            return model_->pairing().connect(*offer, LinkPairing::Replacing::yes);
        }
        return showError(ConsoleTexts::noOffer);
    }
    if (line == "keep") return model_->pairing().declineOffer();
    if (line == "done") return model_->pairing().dismissOutcome();
    if (line == "window") return delegate_->openWindow();
    if (line == "updates") return delegate_->checkForUpdates();
    if (line == "status") return showStatus();
    if (line == "sample") return showSample();
    if (line.starts_with(switchCommand)) return setSwitch(line.substr(switchCommand.size()));
    if (line == "request accessibility") return model_->request(Switch::accessibility);
    if (line == "request screen") return model_->request(Switch::screenRecording);
    if (line == "quit") return quit();
    if (line == "help") return output_.line("help", ConsoleTexts::help);
    if (resemblesLink(line)) return pair(line);
    showError("unknown command " + line + " (help lists them)");
}

void Console::onLineTooLong() {
    showError(ConsoleTexts::lineTooLong);
}

void Console::onSignal(int signal) {
    if (delegate_->isQuitting()) ::_exit(128 + signal);
    quit();
}

void Console::fail() {
    exitStatus_ = EXIT_FAILURE;
    quit();
}

void Console::quit() {
    closeInput_();
    delegate_->quit();
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
        if (words != command.words) continue;
        switches_.set(command.which, command.on);
        return model_->refreshSwitches();
    }
    showError(ConsoleTexts::switchUsage);
}

// Prints the current message if the link causes no change of the state, as when the same refusal is repeated.
void Console::pair(const std::string& link) {
    answeredLink_ = false;
    model_->pairing().connect(link);
    if (!answeredLink_ && model_->state().linkMessage) showError(*model_->state().linkMessage);
}

// Without a prompt, an empty line is ignored and the command is an error.
void Console::confirm(bool isCommand) {
    const auto& pairing = model_->state().pairing;
    if (pairing && std::holds_alternative<PairingPhases::WaitingForYes>(pairing->phase)) {
        return model_->pairing().confirm();
    }
    if (isCommand) showError(ConsoleTexts::nothingToConfirm);
}

void Console::cancel() {
    const auto& state = model_->state();
    if (state.checkingLink || (state.pairing && isInProgress(state.pairing->phase))) {
        return model_->pairing().cancel();
    }
    showError(ConsoleTexts::noPairing);
}

void Console::showStatus() {
    model_->activitySample([this](const ActivitySample& sample) {
        const auto& state = model_->state();
        output_.line("status", "state=" + describe(state.node) + " pid=" + pidText(sample.nodePID) +
                                   " pairing=" + pairingText(state, sample.nodePID) + " restarts=" +
                                   std::to_string(restarts_) + " driver=" + pidText(sample.driverPID) +
                                   " driverRestarts=" + std::to_string(driverRestarts_) +
                                   " switches=accessibility:" + onOff(state.switches.accessibility) +
                                   ",screen:" + onOff(state.switches.screenRecording) +
                                   " endpoint=" + (state.endpoint ? state.endpoint->socketPath : "none") +
                                   " home=" + model_->home()->path);
    });
}

void Console::showSample() {
    model_->activitySample(
        [this](const ActivitySample& sample) { output_.line("sample", sampleLine(sample)); });
}

void Console::showError(const std::string& text) {
    output_.line("error", sanitizedLine(text, longestMessage));
}

}  // namespace tarnik
