#include "app/console/ConsoleReport.h"

#include <utility>

#include "app/console/WindowLines.h"
#include "app/failures/FailureCause.h"
#include "app/texts/ConsoleTexts.h"
#include "app/texts/FailureTexts.h"
#include "core/foundation/TextCleanup.h"
#include "core/node/NodeInstaller.h"
#include "core/pairing/PairingSession.h"

namespace tarnik {
namespace {

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

ConsoleReport::ConsoleReport(const MainThread& mainThread, ConsoleOutput& output,
                             std::shared_ptr<AppModel> model)
    : output_(output),
      model_(std::move(model)),
      feed_(model_, mainThread, [this](const AppState& state) { showNews(state); }) {
    model_->observe(
        guard_.wrap([this](const AppState& now, const AppState& next) { willChange(now, next); }));
}

ConsoleReport::~ConsoleReport() = default;

void ConsoleReport::error(const std::string& text) {
    output_.line("error", sanitizedLine(text, longestMessage));
}

void ConsoleReport::window() {
    shown_ = contentOf(model_->state());
    for (const auto& line : windowLines(*shown_, std::chrono::system_clock::now()))
        output_.line("window", line);
}

void ConsoleReport::status() {
    model_->activitySample([this](const ActivitySample& sample) {
        const auto& state = model_->state();
        output_.line("status", "state=" + describe(state.node) + " pid=" + pidText(sample.nodePID) +
                                   " pairing=" + pairingText(state, sample.nodePID) + " restarts=" +
                                   std::to_string(restarts_.node) + " driver=" + pidText(sample.driverPID) +
                                   " driverRestarts=" + std::to_string(restarts_.driver) +
                                   " switches=accessibility:" + onOff(state.switches.accessibility) +
                                   ",screen:" + onOff(state.switches.screenRecording) +
                                   " endpoint=" + (state.endpoint ? state.endpoint->socketPath : "none") +
                                   " home=" + model_->home()->path);
    });
}

void ConsoleReport::sample() {
    model_->activitySample(
        [this](const ActivitySample& sample) { output_.line("sample", sampleLine(sample)); });
}

void ConsoleReport::willChange(const AppState& now, const AppState& next) {
    if (next.setup != now.setup) showSetup(next.setup);
    if (next.download && next.download != now.download) output_.progress(*next.download);
    if (next.switches != now.switches) {
        output_.line("switches", "accessibility=" + onOff(next.switches.accessibility) +
                                     " screenRecording=" + onOff(next.switches.screenRecording));
    }
    showLink(now, next);
    if (next.pairing && next.pairing != now.pairing) showPairing(*next.pairing);
    if (now.pairing && !next.pairing) output_.line("pairing", "none");
    if (next.node != now.node) showNode(next.node);
    if (next.endpoint != now.endpoint) {
        if (!next.endpoint && next.switches.allOn() && !next.stopping) ++restarts_.driver;
        output_.line("endpoint", next.endpoint ? next.endpoint->socketPath : "none");
    }
}

void ConsoleReport::showSetup(const Setup& setup) {
    if (const auto* installing = std::get_if<Setups::Installing>(&setup)) {
        installing_ = installing->text;
        return output_.line("install", installing_);
    }
    if (const auto* failed = std::get_if<Setups::Failed>(&setup)) {
        error(withDescription(failed->sentence, failed->text));
        if (failed->cause) output_.line("cause", describe(*failed->cause));
        return;
    }
    if (installing_.empty()) return;
    const NodeInstaller installed(*model_->home(), {}, {});
    output_.line("install", "done " + installed.installedVersion().value_or(""));
}

void ConsoleReport::showLink(const AppState& now, const AppState& next) {
    if (next.linkMessage && next.linkMessage != now.linkMessage) {
        ++linkAnswers_;
        if (next.checkingLink) {
            output_.line("link", *next.linkMessage);
        } else {
            error(*next.linkMessage);
            if (next.linkCause) output_.line("cause", describe(*next.linkCause));
        }
    }
    if (next.replaceOffer && next.replaceOffer != now.replaceOffer) {
        ++linkAnswers_;
        output_.line("offer", contentOf(next).heading);
        output_.hint(ConsoleTexts::answerOffer);
    }
}

void ConsoleReport::showNode(const NodeState& node) {
    if (std::holds_alternative<NodeStates::Restarting>(node)) ++restarts_.node;
    output_.line("state", describe(node));
    if (std::holds_alternative<NodeStates::WaitingForLink>(node)) output_.hint(ConsoleTexts::pasteLink);
}

void ConsoleReport::showPairing(const PairingSession::Snapshot& snapshot) {
    if (std::exchange(sessionID_, snapshot.sessionID) != snapshot.sessionID) transcript_ = {};
    const auto news = transcript_.update(snapshot);
    for (const auto& line : news.lines) output_.line("terminal", line);
    if (!news.phase) return;
    output_.line("pairing", describe(*news.phase));
    if (std::holds_alternative<PairingPhases::WaitingForYes>(*news.phase)) {
        output_.hint(ConsoleTexts::answerPrompt);
    }
}

WindowContent ConsoleReport::contentOf(const AppState& state) const {
    return WindowContent::of(state,
                             {.webOrigin = model_->webOrigin(), .closing = WindowSetting::Closing::noWindow});
}

void ConsoleReport::showNews(const AppState& state) {
    if (!shown_) return;
    auto content = contentOf(state);
    const auto news = content.newsSince(*shown_);
    shown_ = std::move(content);
    if (!news.empty()) output_.line("window", news);
}

}  // namespace tarnik
