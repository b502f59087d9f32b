#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "core/foundation/TarnikIdentity.h"

// Decides whether the launched copy of the application is moved to the install path. The system keeps the
// privacy switches only for a copy at that path. Pure functions that read no file and no process.
//
// The install path is a parameter so that tests can use another one.
namespace tarnik::Relocation {

// The argument of a copy that a relocation starts.
inline constexpr std::string_view relaunchArgument = "--tarnik-relocation-relaunch";

// The launched copy.
struct Launch {
    std::string bundlePath;                   // as the system reports it
    bool isTranslocated = false;              // the system runs the copy from a randomised read-only path
    std::optional<std::string> originalPath;  // from which the user opened a translocated copy, if known
    bool isRelaunch = false;                  // started by a relocation

    // Returns originalPath of a translocated copy if known, otherwise bundlePath. Standardizes the path.
    std::string realPath() const;
    bool runsInstalled(std::string_view installPath = TarnikIdentity::installPath) const;

    bool operator==(const Launch&) const = default;
};

namespace Decisions {

struct Install {  // copy this bundle to the install path
    bool replacing = false;
    bool operator==(const Install&) const = default;
};
struct Stay {  // run here without a message
    bool operator==(const Stay&) const = default;
};
struct OpenInstalled {  // open the copy at the install path, and quit this copy
    bool operator==(const OpenInstalled&) const = default;
};
struct CannotInstall {  // the Applications folder is not writable
    bool operator==(const CannotInstall&) const = default;
};
struct RunHere {  // run here, and show the reason
    bool operator==(const RunHere&) const = default;
};
struct Takeover {  // an older copy runs and has to quit
    bool operator==(const Takeover&) const = default;
};

}  // namespace Decisions

using Decision = std::variant<Decisions::Install, Decisions::Stay, Decisions::OpenInstalled,
                              Decisions::CannotInstall, Decisions::RunHere, Decisions::Takeover>;

// The input of decide().
struct Facts {
    Launch launch;
    std::optional<std::string> installedVersion;  // of the copy at the install path, if one exists
    std::string runningVersion;                   // of this copy
    bool canWriteApplications = false;
    bool isDevelopmentBuild = false;  // a development build is never moved
};

// A relaunched copy neither moves nor opens another copy, so two copies can't start each other forever.
Decision decide(const Facts& facts, std::string_view installPath = TarnikIdentity::installPath);

// Returns the name of the decision in the record.
std::string_view recordName(const Decision& decision);

// The action to take for another running copy.
enum class RunningCopyAction {
    activate,  // bring the running copy to the front, and quit this copy
    takeover,  // end the running copy, and continue with this copy
};
RunningCopyAction runningCopyAction(std::string_view runningVersion, std::string_view thisVersion);

// The check that the code signature of the installed copy must pass.
enum class InstalledCopy {
    lenient,                     // no check: neither copy is signed by a team
    needsDesignatedRequirement,  // the copy is ours if it satisfies the requirement with this copy's team
    notOurs,
};
// A team identifier is empty for a signature without a team, and std::nullopt if the identifier is unknown.
InstalledCopy installedCopy(const std::optional<std::string>& runningTeamID,
                            const std::optional<std::string>& installedTeamID);

}  // namespace tarnik::Relocation
