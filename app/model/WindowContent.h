#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "app/model/AppState.h"
#include "app/model/DownloadProgress.h"
#include "app/model/WindowIntent.h"
#include "core/foundation/Url.h"

namespace tarnik {

// Everything that the window shows at one moment. A view draws it from top to bottom, passes the intents of
// what is clicked on, and decides nothing.
//
// A value without a thread. Every text is plain and bounded; every control has a name for a screen reader.
struct WindowContent {
    // What the upper half of the window is about.
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

    struct Symbol {
        std::string_view name;  // one of SymbolName
        std::string accessibleName;
        bool operator==(const Symbol&) const = default;
    };

    enum class Key { none, defaultKey, cancelKey, defaultAndCancelKey };  // Return, Escape

    struct Button {
        std::string title;
        std::string accessibleName;  // contains the title's words
        WindowIntent intent;
        Key key = Key::none;
        bool enabled = true;
        bool operator==(const Button&) const = default;
    };

    struct LinkField {
        std::string placeholder;
        std::string accessibleName;
        WindowIntent onReturn;
        bool enabled = true;
        bool operator==(const LinkField&) const = default;
    };

    struct Terminal {  // scrolls, follows its end, can be selected
        std::string text;
        std::string accessibleName;
        bool operator==(const Terminal&) const = default;
    };

    struct Busy {  // work of unknown length
        bool operator==(const Busy&) const = default;
    };
    using Progress = std::variant<std::monostate, Busy, DownloadProgress>;

    struct SwitchRow {
        Symbol symbol;
        std::string title;
        std::string description;
        bool on = false;
        std::optional<Button> button;     // while it is off
        std::optional<std::string> hint;  // what to do when it reads off although it was granted
        bool operator==(const SwitchRow&) const = default;
    };

    struct Switches {
        std::string heading;
        std::string text;
        std::vector<SwitchRow> rows;
        bool operator==(const Switches&) const = default;
    };

    Section section = Section::link;
    std::optional<Symbol> symbol;         // beside the heading
    std::string heading;                  // may be empty
    std::vector<std::string> paragraphs;  // under the heading
    Progress progress;
    std::string progressAccessibleName;  // empty without progress
    std::optional<Terminal> terminal;
    std::optional<LinkField> linkField;
    std::optional<std::string> message;  // about the link that was last given
    std::vector<Button> buttons;         // the one that is meant most comes first
    Switches switches;
    std::string announcement;  // the main line, for a screen reader

    static WindowContent of(const AppState& state, const Url& webOrigin);

    // What a screen reader is to be told when this takes the place of `before`; empty when nothing is new
    // that a person waits for. Progress in bytes and terminal text are not.
    std::string newsSince(const WindowContent& before) const;

    bool operator==(const WindowContent&) const = default;
};

}  // namespace tarnik
