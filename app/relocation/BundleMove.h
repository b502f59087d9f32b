#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>

#include <sys/types.h>

#include "app/platform/BundleOperations.h"
#include "app/relocation/QuarantineWalk.h"

namespace tarnik {

// Installs a copy of a bundle at another path. The copy is created beside that path under a hidden name and
// checked. Then it is exchanged with the bundle at the path, or moved there if no bundle exists. So the path
// never contains a partial bundle. `from` is not changed.
struct BundleMove {
    struct Failure {
        std::string step;                  // for the record: "copy", "check", "exchange"
        std::optional<SystemError> error;  // if a system call failed

        std::string describe() const;
    };

    std::string from;
    std::string to;
    std::string version;                   // of `from`
    std::optional<std::string> replacing;  // the version at `to`; std::nullopt if no bundle exists there
    std::function<bool(const std::string& bundle)> isOurs;
    std::function<bool()> isCancelled;  // checked before the last step

    // A process runs one move at a time. Blocks while the bundle is copied.
    std::expected<QuarantineReport, Failure> run(const BundleFiles& files, pid_t pid) const;

    // Removes the staged copies that ended processes left in the folder. A copy named after `pid` is one of
    // them, left by an earlier process with this id.
    static void removeLeftovers(const std::string& folder, pid_t pid);

private:
    std::expected<void, Failure> takePlace(const std::string& staged, const BundleFiles& files) const;
};

}  // namespace tarnik
