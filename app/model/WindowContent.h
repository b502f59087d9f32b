#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "app/model/AppState.h"
#include "app/model/DownloadProgress.h"
#include "app/model/UserIntent.h"
#include "core/foundation/Url.h"

namespace tarnik {

// The symbols that the window draws.
namespace SymbolName {

inline constexpr std::string_view checkmark = "checkmark.circle.fill";
inline constexpr std::string_view circle = "circle";
inline constexpr std::string_view arrows = "arrow.triangle.2.circlepath";
inline constexpr std::string_view download = "arrow.down.circle";
inline constexpr std::string_view warning = "exclamationmark.triangle";

}  // namespace SymbolName

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

    struct Symbol {
        std::string_view name;  // one of SymbolName
        std::string accessibleName;
        bool operator==(const Symbol&) const = default;
    };

    enum class Key { none, defaultKey, cancelKey, defaultAndCancelKey };  // default: Return; cancel: Escape

    struct Button {
        std::string title;
        std::string accessibleName;  // contains the words of the title
        UserIntent intent;
        Key key = Key::none;
        bool enabled = true;
        bool operator==(const Button&) const = default;
    };

    struct LinkField {
        std::string placeholder;
        std::string accessibleName;
        UserIntent onReturn;
        bool enabled = true;
        bool operator==(const LinkField&) const = default;
    };

    struct Terminal {  // the view scrolls to the end; the user can select text
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
        std::optional<Button> button;     // absent if the switch is on or the program stops
        std::optional<std::string> hint;  // present for SwitchStatus::mayBeStale
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
    std::vector<std::string> paragraphs;  // below the heading
    Progress progress;
    std::string progressAccessibleName;  // empty if no progress is shown
    std::optional<Terminal> terminal;
    std::optional<LinkField> linkField;
    std::optional<std::string> message;  // about the last link
    std::optional<std::string> cause;    // of the message
    std::vector<Button> buttons;         // the primary button comes first
    Switches switches;
    std::string announcement;  // the main line for screen readers

    static WindowContent of(const AppState& state, const Url& webOrigin);

    // Returns the text that a screen reader announces when this content replaces `before`, or an empty text.
    // Progress in bytes and terminal text are not announced.
    std::string newsSince(const WindowContent& before) const;

    bool operator==(const WindowContent&) const = default;
};

}  // namespace tarnik
