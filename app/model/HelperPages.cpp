#include "app/model/HelperPages.h"

#include <utility>

#include "app/model/PageParts.h"
#include "app/model/TerminalTail.h"
#include "app/texts/ComposedTexts.h"
#include "app/texts/MachineTexts.h"
#include "app/texts/Translation.h"
#include "app/texts/WindowTexts.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

using namespace PageParts;
using Section = WindowContent::Section;
using Intent = UserIntent::Kind;
using Key = WindowContent::Key;

WindowContent problemPage(std::string_view heading) {
    auto content = pageWith(Section::problem, heading);
    setSymbol(content, SymbolName::warning, WindowTexts::problemName);
    return content;
}

WindowContent::Button tryAgainButton() {
    return button(MachineTexts::tryAgain, Intent::retryInstall, Key::defaultKey);
}

WindowContent::Button copyButton() {
    return button(MachineTexts::copyDetails, Intent::copyDetails);
}

WindowContent unusableHomePage(const std::string& why) {
    auto content = problemPage(MachineTexts::homeUnusable);
    content.paragraphs.push_back(sanitizedLine(translatedMessage(why), longestFailure));
    addParagraph(content, MachineTexts::homeUnusableText);
    content.buttons = {copyButton()};
    return content;
}

WindowContent failedInstallPage(const Setups::Failed& failure) {
    auto content = problemPage(MachineTexts::installFailed);
    if (!failure.sentence.empty()) addParagraph(content, failure.sentence);
    if (failure.cause) content.paragraphs.push_back(causeLine(*failure.cause, Language::ofPerson));
    // The system's words come last. A failure without a sentence has only them.
    const auto longest = failure.sentence.empty() ? longestFailure : longestLine;
    if (auto text = sanitizedLine(translatedMessage(failure.text), longest); !text.empty())
        content.paragraphs.push_back(std::move(text));
    content.buttons = {tryAgainButton(), copyButton()};
    return content;
}

WindowContent missingHelperPage() {
    auto content = problemPage(MachineTexts::helperMissing);
    addParagraph(content, MachineTexts::helperMissingText);
    content.buttons = {tryAgainButton(), copyButton()};
    return content;
}

std::string_view setupText(const AppState& state) {
    if (state.switches.allOn() || !state.hasDriver || state.managed.hidesSwitches)
        return MachineTexts::setupText;
    const bool oneIsOn = state.switches.accessibility || state.switches.screenRecording;
    return oneIsOn ? MachineTexts::setupOneSwitch : MachineTexts::setupBothSwitches;
}

// Before the installer's first line, the program checks whether the helper is installed.
WindowContent checkingPage() {
    auto content = pageWith(Section::installing, MachineTexts::gettingReady);
    setSymbol(content, SymbolName::laptop, WindowTexts::computerName);
    setBusy(content);
    addParagraph(content, MachineTexts::takesSeconds);
    return content;
}

WindowContent installingPage(const AppState& state, const std::string& text) {
    const auto line = sanitizedLine(text, longestLine);
    if (line.empty()) return state.joined ? reconnectingPage(state) : checkingPage();

    auto content = pageWith(Section::installing, line);
    content.heading = content.announcement = translatedMessage(line);
    setSymbol(content, SymbolName::download, WindowTexts::downloadName);
    setBusy(content);
    addParagraph(content, setupText(state));
    if (!state.joined) addParagraph(content, MachineTexts::setupNext);
    if (!state.download) return content;
    content.progress = DownloadProgress::of(*state.download);
    content.progressAccessibleName = translated(WindowTexts::downloadName);
    return content;
}

}  // namespace

WindowContent reconnectingPage(const AppState& state) {
    auto content = pageWith(Section::reconnecting, MachineTexts::reconnecting);
    setSymbol(content, SymbolName::arrows, WindowTexts::busyName);
    if (!state.helper.trouble) {
        addParagraph(content, MachineTexts::takesSeconds);
        setBusy(content);
        return content;
    }
    addTrouble(content, state);
    content.buttons.insert(content.buttons.begin(),
                           button(MachineTexts::tryNow, Intent::restartHelper, Key::defaultKey));
    return content;
}

void addTrouble(WindowContent& content, const AppState& state) {
    content.trouble = state.helper.trouble;
    content.trouble->last = sanitizedLine(content.trouble->last, longestLine);
    setTerminal(content, terminalTail(state.helper.lastLines), WindowTexts::lastLinesName);
    content.buttons = {copyButton(), button(MachineTexts::showLog, Intent::showLog)};
}

std::optional<WindowContent> unavailableHelperPage(const AppState& state) {
    if (state.homeError) return unusableHomePage(*state.homeError);
    if (const auto* failed = std::get_if<Setups::Failed>(&state.setup)) return failedInstallPage(*failed);
    if (const auto* installing = std::get_if<Setups::Installing>(&state.setup))
        return installingPage(state, installing->text);
    if (std::holds_alternative<NodeStates::NotInstalled>(state.node)) return missingHelperPage();
    return std::nullopt;
}

}  // namespace tarnik
