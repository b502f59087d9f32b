#include "app/uninstall/UninstallPlan.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "app/control/ControlFolder.h"
#include "app/journal/Journal.h"
#include "app/texts/UninstallTexts.h"
#include "core/foundation/DirectoryReader.h"
#include "core/foundation/Files.h"
#include "core/foundation/Paths.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/node/NodeHomeLock.h"

namespace tarnik {
namespace {

using Result = std::expected<void, std::string>;
using HomeLock = std::expected<NodeHomeLock, NodeHomeLock::Failure>;

constexpr Seconds lockTimeout = Seconds(3);
constexpr Seconds lockRetryInterval = Seconds(0.1);

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

std::vector<std::string> namesIn(const std::string& folder) {
    DirectoryReader reader(UniqueFd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)));
    std::vector<std::string> names;
    while (const char* name = reader.next()) names.emplace_back(name);
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

// A folder that is not empty is kept: something in it isn't ours.
Result removeEmptyFolder(const std::string& path) {
    if (::rmdir(path.c_str()) != 0 && errno != ENOENT && errno != ENOTEMPTY && errno != EEXIST)
        return failed("rmdir", path);
    return {};
}

bool isHeldElsewhere(const HomeLock& lock) {
    return !lock && lock.error().reason == NodeHomeLock::Failure::Reason::heldElsewhere;
}

// A program that was told to quit releases the lock as it exits, soon after its last answer.
HomeLock lockHome(const NodeHome& home) {
    const TimePoint deadline = after(steadyNow(), lockTimeout);
    auto lock = NodeHomeLock::take(home);
    while (isHeldElsewhere(lock) && steadyNow() < deadline) {
        std::this_thread::sleep_for(lockRetryInterval);
        lock = NodeHomeLock::take(home);
    }
    return lock;
}

// Removes the marker last, so that a removal that was interrupted can be repeated.
Result removeHome(const NodeHome& home) {
    const auto lock = lockHome(home);
    if (isHeldElsewhere(lock)) return std::unexpected(Texts::homeInUse(home.path));
    if (!isOwnFolder(home.path) || !home.isClaimed()) return std::unexpected(Texts::notOurs(home.path));
    for (const auto& name : namesIn(home.path)) {
        const auto path = home.path + "/" + name;
        if (name != NodeHome::markerName && !removeTree(path))
            return std::unexpected(Texts::notRemoved(path));
    }
    if (auto removed = removeFile(home.marker()); !removed) return removed;
    return removeEmptyFolder(home.path);
}

void addHome(UninstallPlan& plan, const NodeHome& home) {
    if (!statusOf(home.path)) return;
    if (!isOwnFolder(home.path) || !home.isClaimed()) {
        plan.kept.push_back(Texts::notOurs(home.path));
        return;
    }
    plan.items.push_back({home.path, Texts::home, [home] { return removeHome(home); }});
    if (!home.isDefault) return;
    const auto parent = parentFolder(home.path);
    if (namesIn(parent).size() == 1)
        plan.items.push_back({parent, Texts::emptyFolder, [parent] { return removeEmptyFolder(parent); }});
}

const char* reasonOfLog(const std::string& name) {
    if (name == "node.log" || name == "node.log.1") return Texts::helperLog;
    const bool isJournal = name == Journal::fileName || name == std::string(Journal::fileName) + ".1";
    return isJournal ? Texts::journal : nullptr;
}

const char* reasonOfSupportFile(const std::string& name) {
    if (name == ControlFolder::socketName) return Texts::socket;
    if (name == "relocation.log" || name == "relocation.log.new") return Texts::relocationLog;
    if (name == "link" || name == "link.new") return Texts::link;
    if (name == "cua") return Texts::driverFolder;
    return name.starts_with("owner-") ? Texts::owner : nullptr;
}

}  // namespace

void addFile(UninstallPlan& plan, const std::string& path, const char* why) {
    const auto status = statusOf(path);
    if (!status) return;
    const bool isFile = S_ISREG(status->st_mode) || S_ISSOCK(status->st_mode);
    if (isOurs(*status) && S_ISDIR(status->st_mode)) {
        plan.items.push_back({path, why, [path] { return removeOwnTree(path); }});
    } else if (isOurs(*status) && isFile) {
        plan.items.push_back({path, why, [path] { return removeFile(path); }});
    } else {
        plan.kept.push_back(Texts::notAFile(path));
    }
}

void addFolder(UninstallPlan& plan, const OwnFolder& folder) {
    if (!statusOf(folder.path)) return;
    if (!isOwnFolder(folder.path)) {
        plan.kept.push_back(Texts::notAFile(folder.path));
        return;
    }
    const auto keptBefore = plan.kept.size();
    for (const auto& name : namesIn(folder.path)) {
        const auto path = folder.path + "/" + name;
        if (const char* why = folder.reason(name))
            addFile(plan, path, why);
        else
            plan.kept.push_back(Texts::notOurs(path));
    }
    if (plan.kept.size() > keptBefore) return;
    plan.items.push_back({folder.path, folder.why, [path = folder.path] { return removeEmptyFolder(path); }});
}

UninstallPlan UninstallPlan::make(const Places& places) {
    UninstallPlan plan;
    for (const auto& home : places.homes) addHome(plan, home);
    addFolder(plan, {places.folders.stateFolder(), reasonOfLog, Texts::stateFolder});
    auto support = places.controlFolders;
    const auto mainSupport = places.folders.applicationSupport + "/" + std::string(TarnikIdentity::appName);
    if (std::ranges::find(support, mainSupport) == support.end()) support.push_back(mainSupport);
    for (const auto& path : support) addFolder(plan, {path, reasonOfSupportFile, Texts::supportFolder});
    addDesktopItems(plan, places.folders);
    return plan;
}

}  // namespace tarnik
