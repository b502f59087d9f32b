#pragma once

#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "app/platform/LoginItemService.h"
#include "app/platform/SystemFolders.h"
#include "core/foundation/SystemError.h"
#include "core/process/Environment.h"

namespace tarnik {

// The desktop entry that starts the program at login. The user's entry hides entries of the same name in the
// system's folders.
//
// A value. Call from any thread. The launch never changes an existing entry, even if it is disabled or a link
// to /dev/null. A marker file in the preferences folder records that the entry was written. The launch writes
// the entry only once, so a deleted entry stays deleted. Only a choice of the user changes an entry.
class AutostartEntry {
public:
    // The argument that the entry passes to the program.
    static constexpr const char* argument = "--at-login";

    // Return the path of the user's entry, and of the empty file that exists once we have written it.
    static std::string entryPath(const SystemFolders& folders);
    static std::string markerPath(const SystemFolders& folders);

    // `environment` is the session's. `program` is an absolute path.
    AutostartEntry(const SystemFolders& folders, const Environment& environment, std::string program);

    // Returns `on` if this session starts the program of the entry at login. Never returns `waiting`.
    LoginItemState state() const;
    bool write() const;
    std::expected<void, SystemError> choose(LoginItemChoice choice) const;

    LoginItemService operations() const;

private:
    std::expected<void, SystemError> turnOn() const;
    std::expected<void, SystemError> turnOff() const;
    std::expected<void, SystemError> replace(const std::string& text) const;
    std::optional<std::string> current() const;
    bool isStarted(const std::string& text) const;

    std::string entry_;
    std::string marker_;                      // the path of the marker file
    std::vector<std::string> systemEntries_;  // paths, the most important one first
    std::vector<std::string> desktops_;       // the names of the current desktop
    std::vector<std::string> programFolders_;
    std::string program_;
};

}  // namespace tarnik
