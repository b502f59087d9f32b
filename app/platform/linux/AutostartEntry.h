#pragma once

#include <string>

#include "app/platform/LoginItemService.h"
#include "app/platform/SystemFolders.h"

namespace tarnik {

// The desktop entry in the user's "autostart" folder, which starts the program at login.
//
// A value. Call from any thread. An existing entry is never changed, whether it is disabled (Hidden, or
// X-GNOME-Autostart-enabled=false) or a link to /dev/null. We write an entry only once, as recorded in the
// preferences folder, so that a deleted entry stays deleted.
class AutostartEntry {
public:
    // The argument that the entry passes to the program.
    static constexpr const char* argument = "--at-login";

    // `program` is an absolute path.
    AutostartEntry(const SystemFolders& folders, std::string program);

    bool isEnabled() const;
    bool write() const;

    LoginItemService operations() const;

private:
    std::string entry_;
    std::string marker_;  // this file exists once we have written the entry
    std::string program_;
};

}  // namespace tarnik
