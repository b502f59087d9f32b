#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>

#include <sys/types.h>

#include "app/platform/BundleOperations.h"
#include "app/relocation/QuarantineWalk.h"

namespace tarnik {

// Installs a copy of the bundle `from` at the path `to`. Creates the copy under a hidden name beside `to` and
// checks it. Then exchanges the copy with the bundle at `to`, or moves the copy there if no bundle exists. So
// `to` never contains a partial bundle. `from` is not changed.
struct BundleMove {
    struct Failure {
        std::string step;                  // for the record, such as "copy", "check" or "exchange"
        std::optional<SystemError> error;  // std::nullopt if no system call failed

        std::string describe() const;
    };

    std::string from;
    std::string to;
    std::string version;                   // of `from`
    std::optional<std::string> replacing;  // the version at `to`; std::nullopt if no bundle exists there
    std::function<bool(const std::string& bundle)> isOurs;
    std::function<bool()> isCancelled;  // checked before the exchange or the move

    // Blocks while the bundle is copied. Run one move at a time in a process, because only `pid` makes
    // the hidden name unique.
    std::expected<QuarantineReport, Failure> run(const BundleFiles& files, pid_t pid) const;

    // Removes the hidden copies that ended processes left in the folder. `pid` is this process. A copy with
    // this id in its name is also removed, because an earlier process with the same id left it.
    static void removeLeftovers(const std::string& folder, pid_t pid);

private:
    std::expected<void, Failure> takePlace(const std::string& staged, const BundleFiles& files) const;
};

}  // namespace tarnik
