#include "app/model/AgentTakeover.h"

#include <unistd.h>

#include "core/foundation/Files.h"
#include "core/foundation/PropertyList.h"

namespace tarnik {

bool AgentTakeover::isNeeded() const {
    return exists(LaunchdTakeover::plistPath(userFolder));
}

void AgentTakeover::run() const {
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
