#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/platform/SystemFolders.h"
#include "core/foundation/Mounts.h"
#include "core/foundation/Time.h"
#include "core/node/NodeHome.h"
#include "core/node/NodeHomeLock.h"

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
    std::vector<std::string> kept;        // sentences about existing things that are not removed
    std::optional<std::string> obstacle;  // a sentence; then nothing may be removed

    // The folders in which the program keeps files.
    struct Places {
        std::vector<NodeHome> homes;
        SystemFolders folders;
        std::vector<std::string> controlFolders;  // that may contain the control socket
        // The home whose program uses the logs and settings, if it is none of `homes`. They are kept then.
        std::optional<std::string> otherHome = {};
        std::function<std::optional<std::vector<std::string>>()> mountPoints = &tarnik::mountPoints;
    };

    // Reads the disk and changes nothing.
    static UninstallPlan make(const Places& places);
};

// Locks the homes until the result is destroyed, so that no program uses them. The error is one line: another
// program uses one of the homes, or another home with the same logs and settings. Waits, because
// a program that quits releases its lock soon after its last answer.
std::expected<std::vector<NodeHomeLock>, std::string> lockHomes(const UninstallPlan::Places& places,
                                                                Seconds timeout = Seconds(3));

// Adds the preferences and the entry for the start at login, as the system stores them.
void addDesktopItems(UninstallPlan& plan, const SystemFolders& folders);

// Adds the files of a folder whose names `reason` accepts, and then the folder.
struct OwnFolder {
    std::string path;
    std::function<const char*(const std::string& name)> reason;  // nullptr for a name that isn't ours
    const char* why;
    std::string tree = {};  // the name of a folder in it that is removed with its contents
};
void addFolder(UninstallPlan& plan, const OwnFolder& folder);

// Adds the file if it is a regular file or a socket of this user.
void addFile(UninstallPlan& plan, const std::string& path, const char* why);

}  // namespace tarnik
