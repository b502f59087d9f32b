#pragma once

#include <array>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "app/model/DownloadProgress.h"
#include "app/model/SymbolName.h"
#include "app/model/UserIntent.h"

// The parts of a WindowContent. All are values. Every text is plain and bounded.
namespace tarnik::WindowParts {

// A drawing that the window shows beside a text.
struct Symbol {
    std::string name;  // one of SymbolName
    std::string accessibleName;
    bool operator==(const Symbol&) const = default;
};

enum class Key { none, defaultKey, cancelKey, defaultAndCancelKey };  // default: Return; cancel: Escape

// A push button.
struct Button {
    std::string title;
    std::string accessibleName;  // contains the words of the title
    UserIntent intent;
    Key key = Key::none;
    bool enabled = true;
    bool operator==(const Button&) const = default;
};

// The input field for a link. A refused field has the colour of errors, the focus, and its text selected.
struct LinkField {
    std::string placeholder;
    std::string accessibleName;
    UserIntent onReturn;
    std::optional<Button> paste;  // shown while the field is empty
    bool refused = false;
    bool enabled = true;
    bool operator==(const LinkField&) const = default;
};

// The output of a program. The user can scroll and select text.
struct Terminal {
    enum class Shows { end, beginning };  // until the user scrolls
    std::string text;
    std::string accessibleName;
    Shows shows = Shows::end;
    bool operator==(const Terminal&) const = default;
};

// Work of unknown length.
struct Busy {
    bool operator==(const Busy&) const = default;
};

using Progress = std::variant<std::monostate, Busy, DownloadProgress>;

// The way from the chat to the connection.
struct Steps {
    std::array<std::string, 3> labels;
    std::string accessibleName;
    bool operator==(const Steps&) const = default;
};

// Facts about this machine, one per row.
struct Card {
    struct Row {
        std::string label;
        std::string value;
        bool operator==(const Row&) const = default;
    };
    std::vector<Row> rows;
    bool operator==(const Card&) const = default;
};

// A short text above the buttons.
struct Message {
    enum class Kind { news, refusal, pointer };  // `pointer` points to the switches below

    Kind kind = Kind::news;
    std::string text;
    std::optional<std::string> cause = {};  // or another fact, on a line below the text
    bool operator==(const Message&) const = default;
};

// A row of the switches section.
struct SwitchRow {
    Symbol symbol;
    std::string title;
    std::string description;
    bool on = false;
    std::optional<Button> button;     // absent if the switch is on or the program stops
    std::optional<std::string> hint;  // present for SwitchStatus::mayBeStale
    bool operator==(const SwitchRow&) const = default;
};

// The switches section. Empty if the organisation hides it.
struct Switches {
    std::string heading;
    std::string text;
    std::vector<SwitchRow> rows;
    bool operator==(const Switches&) const = default;
};

// A choice of the user that the system may still have to allow.
struct CheckBox {
    enum class State { off, on, waiting };

    State state = State::off;
    std::string title;
    UserIntent intent;  // of a click
    bool enabled = true;
    bool operator==(const CheckBox&) const = default;
};

}  // namespace tarnik::WindowParts
