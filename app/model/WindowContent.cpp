#include "app/model/WindowContent.h"

#include "app/model/ConnectedPage.h"
#include "app/model/HelperPages.h"
#include "app/model/IsState.h"
#include "app/model/LoginCheckBox.h"
#include "app/model/PageParts.h"
#include "app/model/PairingPage.h"
#include "app/texts/ComposedTexts.h"
#include "app/texts/LinkTexts.h"
#include "app/texts/MachineTexts.h"
#include "app/texts/Translation.h"
#include "app/texts/WindowTexts.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

using namespace PageParts;
using Section = WindowContent::Section;
using Key = WindowContent::Key;
using MessageKind = WindowContent::Message::Kind;
using Intent = UserIntent::Kind;

WindowContent stoppingPage() {
    auto content = pageWith(Section::stopping, MachineTexts::stopping);
    setSymbol(content, SymbolName::laptop, WindowTexts::computerName);
    setBusy(content);
    addParagraph(content, MachineTexts::stoppingText);
    return content;
}

WindowContent offerPage(const JoinCode& offer) {
    auto content = pageWith(Section::replaceOffer, WindowTexts::offerHeading);
    setSymbol(content, SymbolName::laptop, WindowTexts::computerName);
    addParagraph(content, WindowTexts::offerText);
    // No button is the default. Anybody can send a link, and a stray Return must not replace the account.
    content.buttons = {button(WindowTexts::offerKeep, Intent::keepCurrent, Key::cancelKey),
                       button(WindowTexts::offerConnect, Intent::connectOffer)};
    content.buttons.back().intent.offer = offer;
    return content;
}

// Returns true if the node of a joined machine will run again without the user's help.
bool isReconnecting(const AppState& state) {
    if (is<NodeStates::Stopped>(state.node)) return is<Setups::Ready>(state.setup);
    return is<NodeStates::Restarting>(state.node) || is<NodeStates::Pairing>(state.node);
}

WindowContent::Steps steps() {
    return {.labels = {translated(WindowTexts::stepChat), translated(WindowTexts::stepLink),
                       translated(WindowTexts::stepConnected)},
            .accessibleName = translated(WindowTexts::stepsName)};
}

WindowContent linkPage(const AppState& state, const Url& webOrigin) {
    auto content = pageWith(Section::link, WindowTexts::linkHeading);
    setSymbol(content, SymbolName::laptop, WindowTexts::computerName);
    content.steps = steps();
    addParagraph(content, WindowTexts::linkText);
    const auto placeholder = webOrigin.appending("c").text() + std::string(WindowTexts::linkPathHint);
    auto& field = content.linkField.emplace();
    field = {.placeholder = sanitizedLine(placeholder, longestLine),
             .accessibleName = translated(WindowTexts::linkFieldName),
             .onReturn = {.kind = Intent::connectPasted},
             .refused = state.linkMessage && !state.checkingLink,
             .enabled = !state.checkingLink && state.managed.allowsPairing};
    if (field.enabled) {
        field.paste = button(WindowTexts::paste, Intent::pasteLink);
        field.paste->accessibleName = translated(WindowTexts::pasteName);
    }
    content.buttons = {button(WindowTexts::linkContinue, Intent::connectPasted, Key::defaultKey)};
    content.buttons.front().enabled = field.enabled;
    if (!state.managed.allowsPairing)
        content.message = {.kind = MessageKind::news, .text = translated(LinkTexts::pairingNotAllowed)};
    return content;
}

WindowContent restingPage(const AppState& state, const WindowSetting& setting) {
    if (state.joined && is<NodeStates::Running>(state.node)) return connectedPage(state, setting);
    if (state.joined && isReconnecting(state)) return reconnectingPage(state);
    if (auto page = unavailableHelperPage(state)) return *std::move(page);
    return linkPage(state, setting.webOrigin);
}

// Returns the message about the last link.
WindowContent::Message linkMessage(const AppState& state) {
    WindowContent::Message message{.kind = state.checkingLink ? MessageKind::news : MessageKind::refusal,
                                   .text = sanitizedLine(translatedMessage(*state.linkMessage), longestLine)};
    if (state.linkCause) message.cause = causeLine(*state.linkCause, Language::ofPerson);
    return message;
}

// Returns the first page that applies.
WindowContent upperHalf(const AppState& state, const WindowSetting& setting) {
    if (state.stopping) return stoppingPage();
    if (state.replaceOffer) return offerPage(*state.replaceOffer);
    // The node has stopped. The session of the connect command begins next.
    if (state.checkingLink && is<NodeStates::Pairing>(state.node)) return pairingStartPage();

    auto content = state.pairing ? pairingPage(state, setting) : restingPage(state, setting);
    if (state.linkMessage) content.message = linkMessage(state);
    if (!state.checkingLink) return content;
    setBusy(content);
    // The check can only be cancelled. "Continue" stays in its place, so that the page doesn't change twice.
    if (!content.linkField) content.buttons.clear();
    content.buttons.push_back(cancelButton());
    return content;
}

WindowContent::SwitchRow switchRow(const AppState& state, Switch which) {
    const SwitchStatus status = state.status(which);
    const std::string name = translated(title(which));
    WindowContent::SwitchRow row{.title = name, .description = translated(why(which))};
    row.on = status == SwitchStatus::on;
    row.symbol = {.name = std::string(row.on ? SymbolName::checkmark : SymbolName::circle),
                  .accessibleName = translated(row.on ? WindowTexts::switchIsOn : WindowTexts::switchIsOff,
                                               {{"switch", name}})};
    if (!row.on && !state.stopping)
        row.button = {.title = translated(WindowTexts::turnOn),
                      .accessibleName = translated(WindowTexts::turnOnSwitch, {{"switch", name}}),
                      .intent = {.kind = Intent::requestSwitch, .which = which}};
    if (status == SwitchStatus::mayBeStale) row.hint = translated(SwitchSnapshot::staleHint);
    return row;
}

}  // namespace

WindowContent WindowContent::of(const AppState& state, const WindowSetting& setting) {
    auto content = upperHalf(state, setting);
    if (const auto failed = loginMessage(state)) content.message = *failed;  // about the last click
    content.startAtLogin = loginCheckBox(state);
    if (state.managed.hidesSwitches) return content;
    content.switches.heading = translated(WindowTexts::switchesHeading);
    content.switches.text = translated(WindowTexts::switchesText);
    for (const Switch which : allCases) content.switches.rows.push_back(switchRow(state, which));
    return content;
}

std::string WindowContent::newsSince(const WindowContent& before) const {
    std::string news;
    const auto announce = [&](std::string_view text) {
        if (!news.empty()) news += ' ';
        news += text;
    };
    if (announcement != before.announcement) announce(announcement);
    // Only the beginning of the trouble: its sentence changes every second.
    if (trouble && !before.trouble) announce(trouble->sentenceAt(trouble->at));
    for (std::size_t i = 0; i < switches.rows.size() && i < before.switches.rows.size(); ++i)
        if (switches.rows[i].on != before.switches.rows[i].on)
            announce(switches.rows[i].symbol.accessibleName);
    if (message && message != before.message) {
        announce(message->text);
        if (message->cause) announce(*message->cause);
    }
    return news;
}

}  // namespace tarnik
