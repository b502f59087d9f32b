#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "core/foundation/Files.h"
#include "core/foundation/Time.h"

namespace tarnik {

// The copy of the application that this process is.
struct OwnCopy {
    std::string bundlePath;
    bool isTranslocated = false;              // run from a randomised read-only copy
    std::optional<std::string> originalPath;  // what that was opened from, where the system tells
    std::vector<std::string> arguments;
};

// Another process of the application. Only id and start together tell which one is meant.
struct OtherCopy {
    pid_t pid = 0;
    std::optional<ProcessTime> started;
    std::string bundlePath;
};

// The signatures of bundles. Each look is at the whole bundle and may take seconds.
struct CodeSignatures {
    // Empty for a valid signature that names no team (ad hoc); none where the signature isn't valid or there
    // is none.
    std::function<std::optional<std::string>(const std::string& bundle)> teamIdentifier;

    // Whether the bundle is validly signed as our bundle identifier by this team.
    std::function<bool(const std::string& bundle, const std::string& team)> satisfiesRequirement;
};

// What is done to bundles as files. None of these follows a link that is the last part of a path.
struct BundleFiles {
    using Done = std::expected<void, SystemError>;

    std::function<bool(const std::string& folder)> canWrite;

    // The whole bundle with its attributes; nothing may be at `to`. A failure may leave a part there.
    std::function<Done(const std::string& from, const std::string& to)> copy;

    // Each takes the other's place, at once: nobody ever finds either path empty.
    std::function<Done(const std::string& one, const std::string& other)> exchange;

    // Fails when there is something at `to`.
    std::function<Done(const std::string& from, const std::string& to)> moveIntoEmptyPlace;

    // Puts it where the person finds it again. May ask the person first, and so take long.
    std::function<Done(const std::string& path)> trash;

    // Removes com.apple.quarantine from this one entry: whether it had it.
    std::function<std::expected<bool, SystemError>(const std::string& entry)> clearQuarantine;
};

// The other processes with our bundle identifier.
struct OtherCopies {
    // Those that were started before this one, so that of two started together one stays. Without ourselves.
    std::function<std::vector<OtherCopy>()> startedBefore;

    // Asked of the process table, not of what AppKit noted: nothing is noted while nobody runs the main loop.
    std::function<bool(const OtherCopy&)> isRunning;

    // Ask it to quit, as the person would or by force; nothing happens when it is gone. They don't wait.
    std::function<void(const OtherCopy&)> terminate;
    std::function<void(const OtherCopy&)> forceTerminate;

    std::function<void(const OtherCopy&)> activate;  // brings it to the front
    std::function<void()> postShowWindow;  // the distributed notification com.tarnik.node.showWindow,
                                           // delivered at once
};

// What moving the application takes of the system. Never called on the main thread.
struct BundleOperations {
    // Absent on a system where applications aren't moved; then nothing else is asked for.
    std::function<OwnCopy()> ownCopy;

    CodeSignatures signatures;
    BundleFiles files;
    OtherCopies others;
};

}  // namespace tarnik
