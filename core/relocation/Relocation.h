#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "core/foundation/TarnikIdentity.h"

// What to do with the copy of the application that was launched: the privacy switches stick only to one that
// stands at the install path. Values and decisions; nothing here looks at a file or a process.
//
// The install path is a parameter with the product's as its default; only tests know another.
namespace tarnik::Relocation {

// Handed to the copy that a relocation starts.
inline constexpr std::string_view relaunchArgument = "--tarnik-relocation-relaunch";

// The copy that runs.
struct Launch {
    std::string bundlePath;                   // as the system reports it
    bool isTranslocated = false;              // run by the system from a randomised read-only copy
    std::optional<std::string> originalPath;  // what a translocated one was opened from, where that is known
    bool isRelaunch = false;                  // started by a relocation

    // Where the person has this copy, standardized.
    std::string realPath() const;
    bool runsInstalled(std::string_view installPath = TarnikIdentity::installPath) const;

    bool operator==(const Launch&) const = default;
};

namespace Decisions {

struct Install {  // copy this bundle to the install path
    bool replacing = false;
    bool operator==(const Install&) const = default;
};
struct Stay {  // run here, say nothing
    bool operator==(const Stay&) const = default;
};
struct OpenInstalled {  // open the copy at the install path, and quit this one
    bool operator==(const OpenInstalled&) const = default;
};
struct CannotInstall {  // the Applications folder can't be written to
    bool operator==(const CannotInstall&) const = default;
};
struct RunHere {  // run here, and say why
    bool operator==(const RunHere&) const = default;
};
struct Takeover {  // an older copy runs, and is to quit
    bool operator==(const Takeover&) const = default;
};

}  // namespace Decisions

using Decision = std::variant<Decisions::Install, Decisions::Stay, Decisions::OpenInstalled,
                              Decisions::CannotInstall, Decisions::RunHere, Decisions::Takeover>;

struct Facts {
    Launch launch;
    std::optional<std::string> installedVersion;  // of the copy at the install path; none without one
    std::string runningVersion;                   // of this copy
    bool canWriteApplications = false;
    bool isDevelopmentBuild = false;  // never moved
};

// A relaunched copy never moves or opens another, so that no two can start each other for ever.
Decision decide(const Facts& facts, std::string_view installPath = TarnikIdentity::installPath);

// What the record calls it.
std::string_view recordName(const Decision& decision);

// About another copy of the application that runs already.
enum class RunningCopyAction {
    activate,  // bring it to the front, and quit this one
    takeover,  // have it quit, and carry on with this one
};
RunningCopyAction runningCopyAction(std::string_view runningVersion, std::string_view thisVersion);

// How the code signature of the installed copy is to be judged.
enum class InstalledCopy {
    lenient,                     // neither is signed by a team
    needsDesignatedRequirement,  // ours if it satisfies one that names this copy's team
    notOurs,
};
// Team identifiers: empty for a signature without a team, none where there is no telling.
InstalledCopy installedCopy(const std::optional<std::string>& runningTeamID,
                            const std::optional<std::string>& installedTeamID);

}  // namespace tarnik::Relocation
