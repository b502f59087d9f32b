#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace tarnik {

// Whether the person can be offered to look for updates: only with an updater that works.
enum class UpdateCheck { unavailable, available };

// The status item's menu, as its view draws it.
struct MenuContent {
    enum class Action { openWindow, checkForUpdates, quit };

    struct Entry {
        std::string_view title;        // empty for a separator
        std::optional<Action> action;  // none for a separator
        std::string_view key;          // with the system's own modifier; empty for none

        bool isSeparator() const { return !action; }
        bool operator==(const Entry&) const = default;
    };

    std::vector<Entry> entries;  // from top to bottom

    static MenuContent with(UpdateCheck updates);

    bool operator==(const MenuContent&) const = default;
};

}  // namespace tarnik
