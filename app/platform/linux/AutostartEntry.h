#pragma once

#include <string>

#include "app/platform/LoginItemService.h"
#include "app/platform/SystemFolders.h"

namespace tarnik {

// The desktop entry that starts the program when the person logs in, in the folder "autostart" of the
// preferences.
//
// A value; any thread. Whatever stands in the entry's place is left as it is: an entry that was switched off
// (Hidden, or X-GNOME-Autostart-enabled=false), a link to /dev/null. We write one only once in the life of
// the preferences, so that an entry that was deleted stays so, too.
class AutostartEntry {
public:
    // What the program is told when it is started by the entry.
    static constexpr const char* argument = "--at-login";

    // `program` is a full path.
    AutostartEntry(const SystemFolders& folders, std::string program);

    bool isEnabled() const;
    bool write() const;

    LoginItemService operations() const;

private:
    std::string entry_;
    std::string marker_;  // is there once we have written the entry
    std::string program_;
};

}  // namespace tarnik
