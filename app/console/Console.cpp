#include "app/console/Console.h"

#include <cstdlib>
#include <utility>

#include <unistd.h>

#include "app/ProgramStart.h"
#include "app/console/WindowText.h"
#include "app/model/PlainSentence.h"
#include "core/foundation/TextCleanup.h"
#include "core/node/NodeInstaller.h"
#include "core/pairing/PairingFailure.h"

namespace tarnik {
namespace {

constexpr const char* help =
    "a link from your chat pairs this computer; Enter or confirm answers the pairing prompt; cancel ends the "
    "pairing; replace or keep answers the offer of another account; done; window; switch "
    "accessibility|screen "
    "on|off; request accessibility|screen; updates; status; sample; quit";

constexpr std::string_view switchCommand = "switch ";
constexpr std::size_t longestMessage = 1000;
constexpr std::size_t shortestLink = 20;  // shorter lines are mistyped commands

std::string pidWord(std::optional<pid_t> pid) {
    return pid ? std::to_string(*pid) : "none";
}

std::string onOff(bool on) {
    return on ? "on" : "off";
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

// The phase of a pairing that is under way, or has connected and goes on in the node's place.
std::string pairingWord(const AppState& state, std::optional<pid_t> node) {
    if (!state.pairing || node) return "none";
    const auto& phase = state.pairing->phase;
    return std::holds_alternative<PairingPhases::Ended>(phase) ? "none" : describe(phase);
}

}  // namespace

Console::Console(MainThread mainThread, ConsoleOutput& output, SimulatedSwitches& switches,
                 std::shared_ptr<AppModel> model, std::function<void()> readsNoMore)
    : mainThread_(mainThread),
      output_(output),
      switches_(switches),
      model_(std::move(model)),
      readsNoMore_(std::move(readsNoMore)),
      feed_(model_, std::move(mainThread), [this](const AppState& state) { showNews(state); }) {
    model_->observe([self = self_](const AppState& now, const AppState& next) {
        if (*self) (*self)->willChange(now, next);
    });
}

Console::~Console() {
    *self_ = nullptr;
}

Presentation Console::presentation(std::function<void()> end) {
    return {.makeStatusItem = [this](const MenuContent& menu) { output_.line("menu", menuText(menu)); },
            .showWindow = [this] { showWindow(); },
            .showAlert = [this](const std::string& title,
                                const std::string& text) { output_.line("alert", title + ": " + text); },
            .fillLinkField = [](const std::string&) {},  // what was typed can be seen in the terminal
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
    mainThread_.post([self = self_, task = std::move(task)] {
        if (*self) task();
    });
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
            output_.hint("Paste the link from your chat here.");
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
        showError(sentenceThenWords(failed->sentence, failed->text));
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
        toldOfLink_ = true;
        if (next.checkingLink) {
            output_.line("link", *next.linkMessage);
        } else {
            showError(*next.linkMessage);
        }
    }
    if (next.replaceOffer && next.replaceOffer != now.replaceOffer) {
        toldOfLink_ = true;
        output_.line("offer", WindowContent::of(next, model_->webOrigin()).heading);
        output_.hint("Type replace to connect to the new account, keep to stay with the current one.");
    }
    if (!startLinkGiven_ || next.checkingLink) return;
    if (next.pairing || next.replaceOffer) startLinkGiven_ = false;  // it was taken
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
        output_.hint("Press Enter here to connect, or type cancel.");
    }
}

void Console::showWindow() {
    shown_ = WindowContent::of(model_->state(), model_->webOrigin());
    for (const auto& line : windowText(*shown_)) output_.line("window", line);
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
            return model_->connect(*offer, AppModel::Replacing::yes);
        }
        return showError("there is no offer to answer");
    }
    if (line == "keep") return model_->keepCurrentConnection();
    if (line == "done") return model_->pairingFinished();
    if (line == "window") return delegate_->openWindow();
    if (line == "updates") return delegate_->checkForUpdates();
    if (line == "status") return showStatus();
    if (line == "sample") return showSample();
    if (line.starts_with(switchCommand)) return setSwitch(line.substr(switchCommand.size()));
    if (line == "request accessibility") return model_->request(Switch::accessibility);
    if (line == "request screen") return model_->request(Switch::screenRecording);
    if (line == "quit") return quit();
    if (line == "help") return output_.line("help", help);
    if (line.size() >= shortestLink || line.find("://") != std::string::npos) return pair(line);
    showError("unknown command " + line + " (help lists them)");
}

void Console::onLineTooLong() {
    showError("that line is too long");
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
    readsNoMore_();
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
    showError("that is: switch accessibility on, or off; switch screen on, or off");
}

// A refusal in the words that stand there already changes nothing, and yet answers this link.
void Console::pair(const std::string& link) {
    toldOfLink_ = false;
    model_->connect(link, AppModel::Replacing::no);
    if (!toldOfLink_ && model_->state().linkMessage) showError(*model_->state().linkMessage);
}

// An empty line that answers nothing is only somebody leaning on the Enter key.
void Console::confirm(bool askedInWords) {
    const auto& pairing = model_->state().pairing;
    if (pairing && std::holds_alternative<PairingPhases::WaitingForYes>(pairing->phase)) {
        return model_->confirmPairing();
    }
    if (askedInWords) showError("there is nothing to confirm");
}

void Console::cancel() {
    const auto& state = model_->state();
    if (state.checkingLink || (state.pairing && isInProgress(state.pairing->phase))) {
        return model_->cancelPairing();
    }
    showError("no pairing is in progress");
}

void Console::showStatus() {
    model_->activitySample([this](const ActivitySample& sample) {
        const auto& state = model_->state();
        output_.line("status", "state=" + describe(state.node) + " pid=" + pidWord(sample.nodePID) +
                                   " pairing=" + pairingWord(state, sample.nodePID) + " restarts=" +
                                   std::to_string(restarts_) + " driver=" + pidWord(sample.driverPID) +
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
