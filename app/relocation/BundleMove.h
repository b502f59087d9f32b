#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>

#include <sys/types.h>

#include "app/platform/BundleOperations.h"
#include "app/relocation/QuarantineWalk.h"

namespace tarnik {

// Puts a copy of a bundle at another place: copied beside it under a hidden name, checked, and only then
// exchanged with what is there, or moved in where nothing is. At every moment there is a whole bundle at the
// place, or nothing where nothing was; `from` is left as it is.
struct BundleMove {
    struct Failure {
        std::string step;                  // "copy", "check", "exchange", "quit"
        std::optional<SystemError> error;  // of the system, where it was that

        std::string describe() const;
    };

    std::string from;
    std::string to;
    std::string version;                   // of `from`
    std::optional<std::string> replacing;  // the version of what is at `to`; none for an empty place
    std::function<bool(const std::string& bundle)> isOurs;
    std::function<bool()> isCancelled;  // looked at before the last step

    // For a process that does no other move meanwhile. Takes as long as copying does.
    std::expected<QuarantineReport, Failure> run(const BundleFiles& files, pid_t pid) const;

    // Removes from the folder what moves of processes that are gone left there, of our own id too.
    static void removeLeftovers(const std::string& folder, pid_t pid);

private:
    std::expected<void, Failure> takePlace(const std::string& staged, const BundleFiles& files) const;
};

}  // namespace tarnik
