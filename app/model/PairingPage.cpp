#include "app/model/PairingPage.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "app/model/ConnectedPage.h"
#include "app/model/PageParts.h"
#include "app/model/TerminalTail.h"
#include "app/texts/MachineTexts.h"
#include "app/texts/Translation.h"
#include "app/texts/WindowTexts.h"

namespace tarnik {
namespace {

using namespace PageParts;
using Section = WindowContent::Section;
using Intent = UserIntent::Kind;
using Key = WindowContent::Key;

// Removes the sentence about keys, because the window has buttons. The text before it on its line stays.
std::string withoutPrompt(std::string text) {
    const auto start = text.find(PairingSession::promptMarker);
    if (start == text.npos) return text;
    auto end = std::min(text.find('\n', start), text.size());
    const bool isWholeLine = start == 0 || text[start - 1] == '\n';
    if (isWholeLine) end = std::min(text.find_first_not_of('\n', end), text.size());
    text.erase(start, end - start);
    text.erase(text.find_last_not_of(" \n") + 1);
    return text;
}

// A short text begins with the account that the user has to check, but narrow lines can make it higher than
// the box. The account of a longer text is near its end.
WindowContent::Terminal::Shows placeToRead(std::string_view text) {
    using enum WindowContent::Terminal::Shows;
    constexpr std::ptrdiff_t shortText = 8;  // lines
    return std::ranges::count(text, '\n') < shortText ? beginning : end;
}

WindowContent working(std::string_view heading) {
    auto content = pageWith(Section::pairing, heading);
    setSymbol(content, SymbolName::laptop, WindowTexts::computerName);
    setBusy(content);
    addParagraph(content, MachineTexts::takesSeconds);
    content.buttons = {cancelButton()};
    return content;
}

WindowContent over(std::string_view heading) {
    auto content = pageWith(Section::pairing, heading);
    content.buttons = {button(WindowTexts::done, Intent::finishPairing, Key::defaultAndCancelKey)};
    return content;
}

struct PageOf {
    const AppState& state;
    const WindowSetting& setting;

    WindowContent operator()(const PairingPhases::Starting&) const {
        return working(WindowTexts::readingLink);
    }
    WindowContent operator()(const PairingPhases::WaitingForYes&) const {
        auto content = pageWith(Section::pairing, WindowTexts::confirmHeading);
        setSymbol(content, SymbolName::laptop, WindowTexts::computerName);
        addParagraph(content, WindowTexts::confirmText);
        content.announcement =
            content.heading + " " + content.paragraphs.front() + " " + translated(WindowTexts::confirmPrompt);
        content.buttons = {button(WindowTexts::connect, Intent::confirmPairing, Key::defaultKey),
                           cancelButton()};
        return content;
    }
    WindowContent operator()(const PairingPhases::Connecting&) const {
        return working(WindowTexts::connecting);
    }
    // The helper's output is not shown after a success.
    WindowContent operator()(const PairingPhases::Connected&) const {
        auto content = over(WindowTexts::pairingConnected);
        addConnectedFacts(content, state, setting);
        return content;
    }
    WindowContent operator()(const PairingPhases::Ended&) const {
        auto content = over(WindowTexts::pairingEnded);
        setSymbol(content, SymbolName::warning, WindowTexts::problemName);
        return content;
    }
};

}  // namespace

WindowContent pairingPage(const AppState& state, const WindowSetting& setting) {
    const auto& pairing = *state.pairing;
    auto content = std::visit(PageOf{state, setting}, pairing.phase);
    if (!std::holds_alternative<PairingPhases::Connected>(pairing.phase))
        setTerminal(content, withoutPrompt(terminalTail(pairing.displayText)), WindowTexts::terminalName);
    if (content.terminal && std::holds_alternative<PairingPhases::WaitingForYes>(pairing.phase))
        content.terminal->shows = placeToRead(content.terminal->text);
    return content;
}

WindowContent pairingStartPage() {
    return working(WindowTexts::readingLink);
}

}  // namespace tarnik
