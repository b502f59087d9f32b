#include "app/model/NodeInstallation.h"

#include <unistd.h>

#include "core/foundation/Files.h"
#include "core/foundation/PropertyList.h"

namespace tarnik {

std::expected<void, InstallError> NodeInstallation::run(const NodeInstaller::Progress& progress) const {
    takeOverAgent();
    if (home.isInstalled()) return {};
    return NodeInstaller(home, settings, installer).install(progress);
}

void NodeInstallation::takeOverAgent() const {
    const auto path = LaunchdTakeover::plistPath(userFolder);
    const auto plan = LaunchdTakeover::plan(readFile(path, PropertyList::maxBytes), path, home, ::getuid());
    if (const auto* alone = std::get_if<LaunchdTakeover::LeaveAlone>(&plan)) {
        log("left the node's LaunchAgent alone: " + alone->reason);
    }
    const auto outcome = LaunchdTakeover::execute(plan, launchd);
    if (!outcome) return;
    const auto text = [](bool value) { return value ? "true" : "false"; };
    log(std::string("took over the node's LaunchAgent: stopped ") + text(outcome->stopped) + ", removed " +
        text(outcome->removed));
}

}  // namespace tarnik
