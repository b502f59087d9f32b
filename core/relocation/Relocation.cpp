#include "core/relocation/Relocation.h"

#include "core/foundation/Paths.h"
#include "core/relocation/VersionOrder.h"

namespace tarnik::Relocation {

namespace {

using namespace Decisions;

// Decides about a copy that is not installed, or that the system runs from a translocated path.
Decision move(const Facts& facts, std::string_view installPath) {
    if (facts.launch.realPath() == installPath) return OpenInstalled{};
    if (!facts.installedVersion) {
        if (!facts.canWriteApplications) return CannotInstall{};
        return Install{.replacing = false};
    }
    if (compareVersions(*facts.installedVersion, facts.runningVersion) >= 0) return OpenInstalled{};
    if (!facts.canWriteApplications) return CannotInstall{};
    return Install{.replacing = true};
}

// The names of the decisions in the record.
std::string_view nameOf(Install install) {
    return install.replacing ? "installReplacing" : "install";
}
std::string_view nameOf(Stay) {
    return "stay";
}
std::string_view nameOf(OpenInstalled) {
    return "openInstalled";
}
std::string_view nameOf(CannotInstall) {
    return "cannotInstall";
}
std::string_view nameOf(RunHere) {
    return "runHere";
}
std::string_view nameOf(Takeover) {
    return "takeover";
}

}  // namespace

std::string Launch::realPath() const {
    return standardize(isTranslocated && originalPath ? *originalPath : bundlePath);
}

bool Launch::runsInstalled(std::string_view installPath) const {
    return !isTranslocated && standardize(bundlePath) == installPath;
}

Decision decide(const Facts& facts, std::string_view installPath) {
    if (facts.launch.runsInstalled(installPath) || facts.isDevelopmentBuild) return Stay{};
    const Decision raw = move(facts, installPath);
    const bool startsAnother =
        std::holds_alternative<Install>(raw) || std::holds_alternative<OpenInstalled>(raw);
    if (startsAnother && facts.launch.isRelaunch) return RunHere{};
    return raw;
}

std::string_view recordName(const Decision& decision) {
    return std::visit([](auto alternative) { return nameOf(alternative); }, decision);
}

RunningCopyAction runningCopyAction(std::string_view runningVersion, std::string_view thisVersion) {
    return compareVersions(runningVersion, thisVersion) < 0 ? RunningCopyAction::takeover
                                                            : RunningCopyAction::activate;
}

InstalledCopy installedCopy(const std::optional<std::string>& runningTeamID,
                            const std::optional<std::string>& installedTeamID) {
    if (!runningTeamID || !installedTeamID) return InstalledCopy::notOurs;
    if (!runningTeamID->empty()) return InstalledCopy::needsDesignatedRequirement;
    return installedTeamID->empty() ? InstalledCopy::lenient : InstalledCopy::notOurs;
}

}  // namespace tarnik::Relocation
