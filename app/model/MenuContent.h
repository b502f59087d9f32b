#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace tarnik {

// States whether the menu has an entry that checks for updates. The entry requires a configured updater.
enum class UpdateCheck { unavailable, available };

// The menu of the status item, ready to be drawn.
struct MenuContent {
    enum class Action { openWindow, checkForUpdates, quit };

    struct Entry {
        std::string_view title;        // empty for a separator
        std::optional<Action> action;  // std::nullopt for a separator
        std::string_view key;          // pressed with the system's modifier; empty if no key is assigned

        bool isSeparator() const { return !action; }
        bool operator==(const Entry&) const = default;
    };

    std::vector<Entry> entries;  // from top to bottom

    static MenuContent with(UpdateCheck updates);

    bool operator==(const MenuContent&) const = default;
};

}  // namespace tarnik
