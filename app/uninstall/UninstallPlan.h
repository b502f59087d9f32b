#pragma once

#include <expected>
#include <functional>
#include <string>
#include <vector>

#include "app/platform/SystemFolders.h"
#include "core/node/NodeHome.h"

namespace tarnik {

// One thing that an uninstall removes.
struct UninstallItem {
    std::string what;                                          // its path
    std::string why;                                           // a phrase: "the helper's log"
    std::function<std::expected<void, std::string>()> remove;  // the error is one line
};

// Everything that an uninstall removes, in this order.
//
// Only what is proven ours is removed: a node home with our marker, and files of ours with names that the
// program uses. Each must belong to this user. No link is followed or removed, and a folder is removed only
// if it is empty then.
struct UninstallPlan {
    std::vector<UninstallItem> items;
    std::vector<std::string> kept;  // sentences about existing things that are not removed

    // The folders in which the program keeps files.
    struct Places {
        std::vector<NodeHome> homes;
        SystemFolders folders;
        std::vector<std::string> controlFolders;  // that may contain the control socket
    };

    // Reads the disk and changes nothing.
    static UninstallPlan make(const Places& places);
};

// Adds the preferences and the entry for the start at login, as the system stores them.
void addDesktopItems(UninstallPlan& plan, const SystemFolders& folders);

// Adds the entries of a folder whose names `isOurs` accepts, and then the folder.
struct OwnFolder {
    std::string path;
    std::function<const char*(const std::string& name)> reason;  // nullptr for a name that isn't ours
    const char* why;
};
void addFolder(UninstallPlan& plan, const OwnFolder& folder);

// Adds the file if it is a regular file of this user.
void addFile(UninstallPlan& plan, const std::string& path, const char* why);

}  // namespace tarnik
