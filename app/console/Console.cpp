#include "app/console/Console.h"

#include <cstdlib>
#include <utility>

#include <unistd.h>

#include "app/ProgramStart.h"
#include "app/console/WindowLines.h"
#include "app/options/CommandLine.h"
#include "app/texts/ConsoleTexts.h"
#include "core/pairing/PairingSession.h"

namespace tarnik {
namespace {

constexpr std::string_view switchCommand = "switch ";

}  // namespace

Console::Console(MainThread mainThread, ConsoleOutput& output, SimulatedSwitches& switches,
                 std::shared_ptr<AppModel> model, std::function<void()> closeInput)
    : mainThread_(std::move(mainThread)),
      switches_(switches),
      model_(std::move(model)),
      closeInput_(std::move(closeInput)),
      report_(mainThread_, output, model_) {
    model_->observe(
        guard_.wrap([this](const AppState& now, const AppState& next) { willChange(now, next); }));
}

Console::~Console() = default;

Presentation Console::presentation(std::function<void()> end) {
    return {.makeStatusItem = [this](const MenuContent& menu) { report_.line("menu", menuLine(menu)); },
            .showWindow = [this] { report_.window(); },
            .showAlert = [this](const std::string& title,
                                const std::string& text) { report_.line("alert", title + ": " + text); },
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
    if (next.setup != now.setup) {
        if (std::holds_alternative<Setups::Failed>(next.setup)) later([this] { fail(); });
        if (std::holds_alternative<Setups::Ready>(next.setup)) later([this] { setupEnded(); });
    }
    if (!startLink_.isGiven || next.checkingLink) return;
    const bool accepted = next.pairing || next.replaceOffer;
    if (!accepted && !next.linkMessage) return;
    startLink_.isGiven = false;
    if (!accepted) later([this] { fail(); });
}

void Console::setupEnded() {
    if (inputEnded_) return quit();
    if (!startLink_.link) return;
    startLink_.isGiven = true;
    pair(*startLink_.link);
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
        return report_.error(ConsoleTexts::noOffer);
    }
    if (line == "keep") return model_->pairing().declineOffer();
    if (line == "done") return model_->pairing().dismissOutcome();
    if (line == "window") return delegate_->openWindow();
    if (line == "updates") return delegate_->checkForUpdates();
    if (line == "status") return report_.status();
    if (line == "sample") return report_.sample();
    if (line.starts_with(switchCommand)) return setSwitch(line.substr(switchCommand.size()));
    if (line == "request accessibility") return model_->request(Switch::accessibility);
    if (line == "request screen") return model_->request(Switch::screenRecording);
    if (line == "quit") return quit();
    if (line == "help") {
        for (const auto* help : ConsoleTexts::helpLines) report_.line("help", help);
        return;
    }
    if (resemblesLink(line)) return pair(line);
    report_.error("unknown command " + line + " (help lists them)");
}

void Console::onLineTooLong() {
    report_.error(ConsoleTexts::lineTooLong);
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
    report_.error(ConsoleTexts::switchUsage);
}

// Pairs with the link. A repeated refusal doesn't change the state, so this function prints it again.
void Console::pair(const std::string& link) {
    const int answers = report_.linkAnswers();
    model_->pairing().connect(link);
    if (report_.linkAnswers() == answers && model_->state().linkMessage)
        report_.error(*model_->state().linkMessage);
}

// If no prompt waits, an empty line is ignored and the command prints an error.
void Console::confirm(bool isCommand) {
    const auto& pairing = model_->state().pairing;
    if (pairing && std::holds_alternative<PairingPhases::WaitingForYes>(pairing->phase)) {
        return model_->pairing().confirm();
    }
    if (isCommand) report_.error(ConsoleTexts::nothingToConfirm);
}

void Console::cancel() {
    const auto& state = model_->state();
    if (state.checkingLink || (state.pairing && isInProgress(state.pairing->phase))) {
        return model_->pairing().cancel();
    }
    report_.error(ConsoleTexts::noPairing);
}

}  // namespace tarnik
