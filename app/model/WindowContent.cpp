#include "app/model/WindowContent.h"

#include "app/model/TerminalTail.h"
#include "app/texts/WindowTexts.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

using Section = WindowContent::Section;
using Key = WindowContent::Key;
using MessageKind = WindowContent::Message::Kind;
using Intent = UserIntent::Kind;

// Upper bounds, in characters, for untrusted texts.
constexpr std::size_t longestLine = 200;
constexpr std::size_t longestFailure = 400;

template <typename State, typename... States>
bool is(const std::variant<States...>& state) {
    return std::holds_alternative<State>(state);
}

WindowContent page(Section section, std::string_view heading) {
    WindowContent content;
    content.section = section;
    content.heading = content.announcement = heading;
    return content;
}

void setSymbol(WindowContent& content, std::string_view name, std::string_view accessibleName) {
    content.symbol = {.name = std::string(name), .accessibleName = std::string(accessibleName)};
}

void setBusy(WindowContent& content) {
    content.progress = WindowContent::Busy{};
    content.progressAccessibleName = WindowTexts::busyName;
}

WindowContent::Button button(std::string_view title, Intent intent, Key key) {
    return {.title = std::string(title),
            .accessibleName = std::string(title),
            .intent = {.kind = intent},
            .key = key};
}

WindowContent::Button cancelButton() {
    return button(WindowTexts::cancel, Intent::cancelPairing, Key::cancelKey);
}

WindowContent stoppingPage() {
    auto content = page(Section::stopping, WindowTexts::stopping);
    setBusy(content);
    return content;
}

WindowContent offerPage(const JoinCode& offer) {
    auto content = page(Section::replaceOffer, WindowTexts::offerHeading);
    content.paragraphs.emplace_back(WindowTexts::offerText);
    // No button is the default. Anybody can send a link, and a stray Return must not replace the account.
    content.buttons = {button(WindowTexts::offerConnect, Intent::connectOffer, Key::none),
                       button(WindowTexts::offerKeep, Intent::keepCurrent, Key::cancelKey)};
    content.buttons.front().intent.offer = offer;
    return content;
}

struct PairingPage {
    WindowContent operator()(const PairingPhases::Starting&) const {
        return working(WindowTexts::readingLink);
    }
    WindowContent operator()(const PairingPhases::WaitingForYes&) const {
        auto content = page(Section::pairing, "");
        content.announcement = WindowTexts::confirmPrompt;
        content.buttons = {button(WindowTexts::connect, Intent::confirmPairing, Key::defaultKey),
                           cancelButton()};
        return content;
    }
    WindowContent operator()(const PairingPhases::Connecting&) const {
        return working(WindowTexts::connecting);
    }
    WindowContent operator()(const PairingPhases::Connected&) const {
        auto content = over(WindowTexts::pairingConnected);
        setSymbol(content, SymbolName::checkmark, WindowTexts::succeededName);
        return content;
    }
    WindowContent operator()(const PairingPhases::Ended&) const {
        auto content = over(WindowTexts::pairingEnded);
        setSymbol(content, SymbolName::warning, WindowTexts::problemName);
        return content;
    }

    static WindowContent working(std::string_view heading) {
        auto content = page(Section::pairing, heading);
        setBusy(content);
        content.buttons = {cancelButton()};
        return content;
    }
    static WindowContent over(std::string_view heading) {
        auto content = page(Section::pairing, heading);
        content.buttons = {button(WindowTexts::done, Intent::finishPairing, Key::defaultAndCancelKey)};
        return content;
    }
};

WindowContent pairingPage(const PairingSession::Snapshot& pairing) {
    auto content = std::visit(PairingPage{}, pairing.phase);
    // After success, the helper's output is not shown.
    if (is<PairingPhases::Connected>(pairing.phase)) return content;
    if (auto text = terminalTail(pairing.text); !text.empty())
        content.terminal = {.text = std::move(text),
                            .accessibleName = std::string(WindowTexts::terminalName)};
    return content;
}

WindowContent connectedPage() {
    auto content = page(Section::connected, WindowTexts::connected);
    setSymbol(content, SymbolName::checkmark, WindowTexts::succeededName);
    return content;
}

WindowContent reconnectingPage(const AppState& state) {
    auto content = page(Section::reconnecting, WindowTexts::reconnecting);
    setSymbol(content, SymbolName::arrows, WindowTexts::reconnecting);
    content.trouble = state.helper.trouble;
    return content;
}

// Returns true if the node of a joined machine will run again without the user's help.
bool isReconnecting(const AppState& state) {
    if (is<NodeStates::Stopped>(state.node)) return is<Setups::Ready>(state.setup);
    return is<NodeStates::Restarting>(state.node) || is<NodeStates::Pairing>(state.node);
}

WindowContent problemPage(std::string_view heading, const Setups::Failed& failure) {
    auto content = page(Section::problem, heading);
    setSymbol(content, SymbolName::warning, WindowTexts::problemName);
    if (!failure.sentence.empty()) content.paragraphs.push_back(failure.sentence);
    if (auto text = sanitizedLine(failure.text, longestFailure); !text.empty())
        content.paragraphs.push_back(std::move(text));
    if (failure.cause) content.paragraphs.push_back(causeLine(*failure.cause));
    content.paragraphs.emplace_back(WindowTexts::tryAgain);
    return content;
}

WindowContent installingPage(const AppState& state, std::string_view text) {
    const std::string line = sanitizedLine(text, longestLine);
    if (line.empty() && state.joined) return reconnectingPage(state);

    auto content = page(Section::installing, line.empty() ? WindowTexts::gettingReady : line);
    setBusy(content);
    if (line.empty()) return content;
    setSymbol(content, SymbolName::download, WindowTexts::downloadName);
    if (!state.download) return content;
    content.progress = DownloadProgress::of(*state.download);
    content.progressAccessibleName = WindowTexts::downloadName;
    return content;
}

WindowContent linkPage(const AppState& state, const Url& webOrigin) {
    auto content = page(Section::link, WindowTexts::linkHeading);
    content.paragraphs.emplace_back(WindowTexts::linkText);
    const auto placeholder = webOrigin.appending("c").text() + std::string(WindowTexts::linkPathHint);
    content.linkField = {.placeholder = sanitizedLine(placeholder, longestLine),
                         .accessibleName = std::string(WindowTexts::linkFieldName),
                         .onReturn = {.kind = Intent::connectPasted},
                         .enabled = !state.checkingLink};
    content.buttons = {button(WindowTexts::linkContinue, Intent::connectPasted, Key::defaultKey)};
    content.buttons.front().enabled = !state.checkingLink;
    return content;
}

// Returns the page for a state in which no link can be used, or std::nullopt for other states.
std::optional<WindowContent> blockingPage(const AppState& state) {
    if (state.homeError) return problemPage(WindowTexts::homeUnusable, {.text = *state.homeError});
    if (const auto* failed = std::get_if<Setups::Failed>(&state.setup))
        return problemPage(WindowTexts::installFailed, *failed);
    if (const auto* installing = std::get_if<Setups::Installing>(&state.setup))
        return installingPage(state, installing->text);
    if (is<NodeStates::NotInstalled>(state.node)) return problemPage(WindowTexts::helperMissing, {});
    return std::nullopt;
}

WindowContent restingPage(const AppState& state, const Url& webOrigin) {
    if (state.joined && is<NodeStates::Running>(state.node)) return connectedPage();
    if (state.joined && isReconnecting(state)) return reconnectingPage(state);
    if (auto blocking = blockingPage(state)) return *std::move(blocking);
    return linkPage(state, webOrigin);
}

// Returns the first page that applies.
WindowContent upperHalf(const AppState& state, const Url& webOrigin) {
    if (state.stopping) return stoppingPage();
    if (state.replaceOffer) return offerPage(*state.replaceOffer);
    // The node has stopped. The session of the connect command begins next.
    if (state.checkingLink && is<NodeStates::Pairing>(state.node))
        return PairingPage::working(WindowTexts::readingLink);

    auto content = state.pairing ? pairingPage(*state.pairing) : restingPage(state, webOrigin);
    if (state.linkMessage) {
        content.message = {.kind = state.checkingLink ? MessageKind::news : MessageKind::refusal,
                           .text = sanitizedLine(*state.linkMessage, longestLine)};
        if (state.linkCause) content.message->cause = causeLine(*state.linkCause);
    }
    if (state.checkingLink) {
        setBusy(content);
        content.buttons.push_back(cancelButton());
    }
    return content;
}

WindowContent::SwitchRow switchRow(const AppState& state, Switch which) {
    const SwitchStatus status = state.status(which);
    const std::string name(title(which));
    WindowContent::SwitchRow row{.title = name, .description = std::string(why(which))};
    row.on = status == SwitchStatus::on;
    row.symbol = {
        .name = std::string(row.on ? SymbolName::checkmark : SymbolName::circle),
        .accessibleName = name + std::string(row.on ? WindowTexts::switchIsOn : WindowTexts::switchIsOff)};
    if (!row.on && !state.stopping)
        row.button = {.title = std::string(WindowTexts::turnOn),
                      .accessibleName = std::string(WindowTexts::turnOnSwitch) + name,
                      .intent = {.kind = Intent::requestSwitch, .which = which}};
    if (status == SwitchStatus::mayBeStale) row.hint = SwitchSnapshot::staleHint;
    return row;
}

}  // namespace

WindowContent WindowContent::of(const AppState& state, const WindowSetting& setting) {
    auto content = upperHalf(state, setting.webOrigin);
    content.switches.heading = WindowTexts::switchesHeading;
    content.switches.text = WindowTexts::switchesText;
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
    if (message && message != before.message) {
        announce(message->text);
        if (message->cause) announce(*message->cause);
    }
    for (std::size_t i = 0; i < switches.rows.size() && i < before.switches.rows.size(); ++i)
        if (switches.rows[i].on != before.switches.rows[i].on)
            announce(switches.rows[i].symbol.accessibleName);
    return news;
}

}  // namespace tarnik
