#include "app/uninstall/UninstallPlan.h"

#include "app/texts/UninstallTexts.h"
#include "core/foundation/Files.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/process/Spawner.h"

namespace tarnik {
namespace {

// Removes the preferences through the system, whose cache would otherwise write the file again.
std::expected<void, std::string> removePreferences() {
    constexpr Seconds timeout = Seconds(10);
    constexpr std::size_t outputLimit = 4096;
    const auto run = Spawner::run({.executable = "/usr/bin/defaults",
                                   .arguments = {"delete", std::string(TarnikIdentity::bundleIdentifier)},
                                   .timeout = timeout,
                                   .limit = outputLimit});
    if (!run || !run->status.succeeded())
        return std::unexpected(std::string(UninstallTexts::preferencesKept));
    return {};
}

}  // namespace

// The system removes the login item when the application is moved to the Trash.
void addDesktopItems(UninstallPlan& plan, const SystemFolders& folders) {
    const auto path = folders.preferences + "/" + std::string(TarnikIdentity::bundleIdentifier) + ".plist";
    if (!isRegularFile(path)) return;
    plan.items.push_back({path, UninstallTexts::preferences, removePreferences});
}

}  // namespace tarnik
