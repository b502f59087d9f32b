#include "app/uninstall/UninstallPlan.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <set>
#include <string_view>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "app/NodeHomeOwner.h"
#include "app/control/ControlFolder.h"
#include "app/journal/Journal.h"
#include "app/texts/UninstallTexts.h"
#include "core/foundation/DirectoryReader.h"
#include "core/foundation/Files.h"
#include "core/foundation/Paths.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {
namespace {

using Result = std::expected<void, std::string>;
using Names = std::vector<std::string>;
using HomeLocks = std::expected<std::vector<NodeHomeLock>, std::string>;

constexpr Seconds lockRetryInterval = Seconds(0.1);

constexpr const char* driverFolder = "cua";

namespace Texts = UninstallTexts;

std::unexpected<std::string> failed(const char* call, const std::string& path) {
    return std::unexpected(describe(SystemError::last(call, path)));
}

// Returns the status of the entry itself, not of a link's target, or std::nullopt if it doesn't exist.
std::optional<struct stat> statusOf(const std::string& path) {
    struct stat found{};
    if (::lstat(path.c_str(), &found) != 0) return std::nullopt;
    return found;
}

bool isOurs(const struct stat& status) {
    return status.st_uid == ::geteuid();
}

bool isOwnFolder(const std::string& path) {
    const auto status = statusOf(path);
    return status && S_ISDIR(status->st_mode) && isOurs(*status);
}

// Returns a sentence for an entry that isn't what the program makes there.
std::string reasonToKeep(const std::string& path) {
    const auto status = statusOf(path);
    if (status && isOurs(*status) && !S_ISLNK(status->st_mode)) return Texts::notOurs(path);
    return Texts::notAFile(path);
}

// Returns std::nullopt if the folder can't be read.
std::optional<Names> namesIn(const std::string& folder) {
    DirectoryReader reader(UniqueFd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)));
    Names names;
    while (const char* name = reader.next()) names.emplace_back(name);
    if (reader.hasFailed()) return std::nullopt;
    std::ranges::sort(names);
    return names;
}

Result removeFile(const std::string& path) {
    if (::unlink(path.c_str()) != 0 && errno != ENOENT) return failed("unlink", path);
    return {};
}

Result removeOwnTree(const std::string& path) {
    if (!isOwnFolder(path) || removeTree(path)) return {};
    return std::unexpected(Texts::notRemoved(path));
}

Result removeEmptyFolder(const std::string& path) {
    if (::rmdir(path.c_str()) != 0 && errno != ENOENT) return failed("rmdir", path);
    return {};
}

// Removes the marker last, so that a removal that was interrupted can be repeated.
Result removeHome(const NodeHome& home) {
    if (!isOwnFolder(home.path) || !home.isClaimed()) return std::unexpected(Texts::notOurs(home.path));
    const auto names = namesIn(home.path);
    if (!names) return std::unexpected(Texts::notRead(home.path));
    for (const auto& name : *names) {
        const auto path = home.path + "/" + name;
        if (name != NodeHome::markerName && !removeTree(path))
            return std::unexpected(Texts::notRemoved(path));
    }
    if (namesIn(home.path) != Names{std::string(NodeHome::markerName)})
        return std::unexpected(Texts::notRemoved(home.path));
    if (auto removed = removeFile(home.marker()); !removed) return removed;
    return removeEmptyFolder(home.path);
}

void addHome(UninstallPlan& plan, const NodeHome& home) {
    if (!statusOf(home.path)) return;
    if (!isOwnFolder(home.path) || !home.isClaimed()) {
        plan.kept.push_back(reasonToKeep(home.path));
        return;
    }
    if (!namesIn(home.path)) plan.obstacle = Texts::notRead(home.path);
    plan.items.push_back({home.path, Texts::home, [home] { return removeHome(home); }});
    if (!home.isDefault) return;
    const auto parent = parentFolder(home.path);
    const auto siblings = namesIn(parent);
    if (siblings && siblings->size() == 1)
        plan.items.push_back({parent, Texts::emptyFolder, [parent] { return removeEmptyFolder(parent); }});
}

const char* reasonOfLog(const std::string& name) {
    if (name == "node.log" || name == "node.log.1") return Texts::helperLog;
    const bool isJournal = name == Journal::fileName || name == std::string(Journal::fileName) + ".1";
    return isJournal ? Texts::journal : nullptr;
}

// Accepts "owner-64768-1310732".
bool isOwnerNote(std::string_view name) {
    constexpr std::string_view start = "owner-";
    if (!name.starts_with(start)) return false;
    const auto numbers = name.substr(start.size());
    const auto device = numbers.substr(0, numbers.find('-'));
    const auto file = numbers.substr(std::min(device.size() + 1, numbers.size()));
    const auto isNumber = [](std::string_view text) {
        return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
    };
    return isNumber(device) && isNumber(file);
}

const char* reasonOfSupportFile(const std::string& name) {
    if (name == ControlFolder::socketName) return Texts::socket;
    if (name == "relocation.log" || name == "relocation.log.new") return Texts::relocationLog;
    if (name == "link" || name == "link.new") return Texts::link;
    if (name == driverFolder) return Texts::driverFolder;
    return isOwnerNote(name) ? Texts::owner : nullptr;
}

std::string supportFolder(const SystemFolders& folders) {
    return folders.applicationSupport + "/" + std::string(TarnikIdentity::appName);
}

// Returns a sentence if a program runs on another home than those with the notes in `ours`.
std::optional<std::string> otherProgram(const std::string& folder, const std::set<std::string>& ours) {
    const auto names = namesIn(folder);
    for (const auto& name : names.value_or(Names())) {
        if (!isOwnerNote(name) || ours.contains(name)) continue;
        const auto note = std::string(folder).append("/").append(name);
        const auto owner = NodeHomeOwner::notedIn(note);
        if (owner && owner->pid != ::getpid()) return Texts::otherProgram(owner->pid, note);
    }
    return std::nullopt;
}

HomeLocks lockNow(const UninstallPlan::Places& places) {
    std::vector<NodeHomeLock> locks;
    std::set<std::string> notes;  // of locked homes; a program that crashed has left them
    for (const auto& home : places.homes) {
        if (!home.isClaimed()) continue;
        auto lock = NodeHomeLock::take(home);
        if (lock) {
            locks.push_back(*std::move(lock));
            notes.insert(NodeHomeOwner::noteName(home).value_or(""));
        } else if (lock.error().reason == NodeHomeLock::Failure::Reason::heldElsewhere) {
            return std::unexpected(Texts::homeInUse(home.path));
        }
    }
    if (places.otherHome) return locks;
    if (auto other = otherProgram(supportFolder(places.folders), notes))
        return std::unexpected(*std::move(other));
    return locks;
}

// A file system that is mounted below one of our folders isn't ours.
void refuseMountPoints(UninstallPlan& plan, const std::optional<std::vector<std::string>>& mountPoints) {
    if (!mountPoints) plan.obstacle = Texts::mountsUnknown;
    for (const auto& item : plan.items) {
        const auto path = resolvingLinks(item.what);
        for (const auto& mount : mountPoints.value_or(Names()))
            if (mount == path || mount.starts_with(path + "/")) plan.obstacle = Texts::mounted(mount);
    }
}

void addTree(UninstallPlan& plan, const std::string& path, const char* why) {
    if (isOwnFolder(path))
        plan.items.push_back({path, why, [path] { return removeOwnTree(path); }});
    else
        plan.kept.push_back(reasonToKeep(path));
}

}  // namespace

void addFile(UninstallPlan& plan, const std::string& path, const char* why) {
    const auto status = statusOf(path);
    if (!status) return;
    const bool isFile = S_ISREG(status->st_mode) || S_ISSOCK(status->st_mode);
    if (isOurs(*status) && isFile)
        plan.items.push_back({path, why, [path] { return removeFile(path); }});
    else
        plan.kept.push_back(reasonToKeep(path));
}

void addFolder(UninstallPlan& plan, const OwnFolder& folder) {
    if (!statusOf(folder.path)) return;
    if (!isOwnFolder(folder.path)) {
        plan.kept.push_back(reasonToKeep(folder.path));
        return;
    }
    const auto names = namesIn(folder.path);
    if (!names) {
        plan.obstacle = Texts::notRead(folder.path);
        return;
    }
    const auto keptBefore = plan.kept.size();
    for (const auto& name : *names) {
        const auto path = folder.path + "/" + name;
        const char* why = folder.reason(name);
        if (why == nullptr)
            plan.kept.push_back(Texts::notOurs(path));
        else if (name == folder.tree)
            addTree(plan, path, why);
        else
            addFile(plan, path, why);
    }
    if (plan.kept.size() > keptBefore) return;
    plan.items.push_back({folder.path, folder.why, [path = folder.path] { return removeEmptyFolder(path); }});
}

// Adds the files that don't belong to one home.
void addSharedFiles(UninstallPlan& plan, const UninstallPlan::Places& places) {
    addFolder(plan, {places.folders.stateFolder(), reasonOfLog, Texts::stateFolder});
    auto support = places.controlFolders;
    const auto mainSupport = supportFolder(places.folders);
    if (std::ranges::find(support, mainSupport) == support.end()) support.push_back(mainSupport);
    for (const auto& path : support)
        addFolder(plan, {path, reasonOfSupportFile, Texts::supportFolder, driverFolder});
    addDesktopItems(plan, places.folders);
}

UninstallPlan UninstallPlan::make(const Places& places) {
    UninstallPlan plan;
    for (const auto& home : places.homes) addHome(plan, home);
    if (places.otherHome)
        plan.kept.push_back(Texts::sharedFiles(*places.otherHome));
    else
        addSharedFiles(plan, places);
    refuseMountPoints(plan, places.mountPoints());
    return plan;
}

HomeLocks lockHomes(const UninstallPlan::Places& places, Seconds timeout) {
    const TimePoint deadline = after(steadyNow(), timeout);
    auto locks = lockNow(places);
    while (!locks && steadyNow() < deadline) {
        std::this_thread::sleep_for(lockRetryInterval);
        locks = lockNow(places);
    }
    return locks;
}

}  // namespace tarnik
