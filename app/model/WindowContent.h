#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/model/AppState.h"
#include "app/model/WindowParts.h"
#include "core/foundation/Url.h"
#include "core/foundation/WallTime.h"

namespace tarnik {

// The dependencies of the window's content beside the state.
struct WindowSetting {
    // The effect of closing the window. It is unknown until the state of the tray is known. A console has no
    // window.
    enum class Closing { unknown, staysInMenuBar, staysInPanel, endsConnection, noWindow };

    Url webOrigin;
    Closing closing = Closing::staysInPanel;
    WallTime now = std::chrono::system_clock::now();
};

// The content of the window at one moment. A view draws the content from top to bottom and reports the intent
// of each click. The view makes no decisions.
//
// A value. Every text is plain and bounded. Every control has a name for screen readers.
struct WindowContent {
    // The subject of the upper half of the window.
    enum class Section {
        stopping,
        replaceOffer,
        pairing,
        connected,
        reconnecting,
        problem,
        installing,
        link,
    };

    using Symbol = WindowParts::Symbol;
    using Key = WindowParts::Key;
    using Button = WindowParts::Button;
    using LinkField = WindowParts::LinkField;
    using Terminal = WindowParts::Terminal;
    using Busy = WindowParts::Busy;
    using Progress = WindowParts::Progress;
    using Steps = WindowParts::Steps;
    using Card = WindowParts::Card;
    using Message = WindowParts::Message;
    using SwitchRow = WindowParts::SwitchRow;
    using Switches = WindowParts::Switches;
    using CheckBox = WindowParts::CheckBox;

    Section section = Section::link;
    std::optional<Symbol> symbol;  // beside the heading
    std::string heading;
    std::string headingInEnglish;  // for commands and logs
    Progress progress;
    std::string progressAccessibleName;  // empty if no progress is shown

    // The body, from top to bottom.
    std::optional<Steps> steps;
    std::vector<std::string> paragraphs;
    std::optional<HelperTrouble> trouble;  // the last paragraph; its text changes every second
    std::optional<Card> card;
    std::optional<Terminal> terminal;
    std::optional<LinkField> linkField;

    std::optional<Message> message;
    std::vector<Button> buttons;  // the button with the default key, if any, comes first
    Switches switches;
    std::optional<CheckBox> startAtLogin;  // std::nullopt if the system has no list of such programs
    std::string announcement;              // the main line for screen readers

    static WindowContent of(const AppState& state, const WindowSetting& setting);

    // Returns the text that a screen reader announces when this content replaces `before`, or an empty text.
    // Progress in bytes and terminal text are not announced.
    std::string newsSince(const WindowContent& before) const;

    bool operator==(const WindowContent&) const = default;
};

}  // namespace tarnik
