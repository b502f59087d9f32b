#include "app/model/ConnectedPage.h"

#include <utility>

#include "app/model/HelperPages.h"
#include "app/model/PageParts.h"
#include "app/texts/MachineTexts.h"
#include "app/texts/Translation.h"
#include "app/texts/WindowTexts.h"
#include "core/foundation/LocalDay.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

using namespace PageParts;
using MessageKind = WindowContent::Message::Kind;

std::vector<Switch> switchesThatAreOff(const AppState& state) {
    std::vector<Switch> off;
    for (const Switch which : allCases)
        if (state.status(which) != SwitchStatus::on) off.push_back(which);
    return off;
}

// A time of day is ambiguous on another day. The row is too narrow for date and time.
std::string runningText(WallTime since, const std::string& version, WallTime now) {
    const auto time = nextDay(since) == nextDay(now) ? formattedTime(since) : formattedDate(since);
    return translated(version.empty() ? MachineTexts::runningSince : MachineTexts::runningSinceVersion,
                      {{.name = "time", .value = time}, {.name = "version", .value = version}});
}

std::string helperValue(const AppState& state, WallTime now) {
    if (!std::holds_alternative<NodeStates::Running>(state.node) || !state.helper.since)
        return translated(MachineTexts::starting);
    return runningText(*state.helper.since, sanitizedLine(state.helper.version, longestVersion), now);
}

std::string_view desktopValue(const AppState& state) {
    if (!state.hasDriver) return MachineTexts::desktopAbsent;
    const auto off = switchesThatAreOff(state).size();
    if (off > 1) return MachineTexts::desktopNeedsTwo;
    if (off == 1) return MachineTexts::desktopNeedsOne;
    if (state.endpoint) return MachineTexts::desktopReady;
    return state.driverHasGivenUp ? MachineTexts::desktopStopped : MachineTexts::starting;
}

WindowContent::Card card(const AppState& state, WallTime now) {
    const auto row = [](std::string_view label, std::string value) {
        return WindowContent::Card::Row{.label = translated(label), .value = std::move(value)};
    };
    WindowContent::Card card{.rows = {row(MachineTexts::helperLabel, helperValue(state, now)),
                                      row(MachineTexts::desktopLabel, translated(desktopValue(state)))}};
    if (state.waitingUpdate) {
        const auto version = sanitizedLine(*state.waitingUpdate, longestVersion);
        card.rows.push_back(
            row(MachineTexts::updatesLabel, translated(MachineTexts::updateWaits, {{"version", version}})));
    } else if (state.checksForUpdates) {
        card.rows.push_back(row(MachineTexts::updatesLabel, translated(MachineTexts::updatesAutomatic)));
    }
    return card;
}

std::string_view closingText(WindowSetting::Closing closing) {
    switch (closing) {
        case WindowSetting::Closing::staysInMenuBar: return MachineTexts::staysInMenuBar;
        case WindowSetting::Closing::staysInPanel: return MachineTexts::staysInPanel;
        case WindowSetting::Closing::endsConnection: return MachineTexts::closingEnds;
        case WindowSetting::Closing::unknown:
        case WindowSetting::Closing::noWindow: break;
    }
    return {};
}

// A build without the desktop driver has no use for the switches. Hidden switches can't be pointed to.
std::optional<WindowContent::Message> message(const AppState& state, const WindowSetting& setting) {
    const auto off = switchesThatAreOff(state);
    WindowContent::Message message;
    if (off.empty() || !state.hasDriver || state.managed.hidesSwitches) {
        message.text = translated(closingText(setting.closing));
    } else {
        message.kind = MessageKind::pointer;
        message.text = off.size() > 1 ? translated(MachineTexts::twoSwitchesOff)
                                      : translated(MachineTexts::oneSwitchOff,
                                                   {{"switch", translated(title(off.front()))}});
        if (setting.closing == WindowSetting::Closing::endsConnection)
            message.cause = translated(MachineTexts::closingEnds);
    }
    return message.text.empty() ? std::nullopt : std::optional(message);
}

}  // namespace

WindowContent connectedPage(const AppState& state, const WindowSetting& setting) {
    auto content = pageWith(WindowContent::Section::connected, MachineTexts::connected);
    setSymbol(content, SymbolName::checkmark, WindowTexts::succeededName);
    if (state.helper.trouble)
        addTrouble(content, state);
    else
        addConnectedFacts(content, state, setting);
    return content;
}

void addConnectedFacts(WindowContent& content, const AppState& state, const WindowSetting& setting) {
    setSymbol(content, SymbolName::checkmark, WindowTexts::succeededName);
    content.card = card(state, setting.now);
    content.message = message(state, setting);
}

}  // namespace tarnik
