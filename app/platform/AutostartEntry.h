#pragma once

#include <string>

#include "app/platform/LoginItemService.h"
#include "app/platform/SystemFolders.h"

namespace tarnik {

// The desktop entry in the user's "autostart" folder. It starts the program at login.
//
// A value. Call from any thread. An existing entry is never changed, even if it is disabled (Hidden=true or
// X-GNOME-Autostart-enabled=false) or a link to /dev/null. A marker file in the preferences folder records
// that the entry was written. The entry is written only once, so a deleted entry stays deleted.
class AutostartEntry {
public:
    // The argument that the entry passes to the program.
    static constexpr const char* argument = "--at-login";

    // Return the path of the entry, and of the empty file that exists once we have written it.
    static std::string entryPath(const SystemFolders& folders);
    static std::string markerPath(const SystemFolders& folders);

    // `program` is an absolute path.
    AutostartEntry(const SystemFolders& folders, std::string program);

    bool isEnabled() const;
    bool write() const;

    LoginItemService operations() const;

private:
    std::string entry_;
    std::string marker_;  // the path of the marker file
    std::string program_;
};

}  // namespace tarnik
