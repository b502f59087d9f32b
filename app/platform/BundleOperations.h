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

// The copy of the application that this process runs.
struct OwnCopy {
    std::string bundlePath;
    bool isTranslocated = false;              // the system runs this copy from a randomised read-only path
    std::optional<std::string> originalPath;  // the path before translocation, if the system knows it
    std::vector<std::string> arguments;
};

// Another process of the application. Process ids are reused, so the start time is part of the identity.
struct OtherCopy {
    pid_t pid = 0;
    std::optional<ProcessTime> started;
    std::string bundlePath;
};

// Checks code signatures. Each call reads the whole bundle and may take seconds.
struct CodeSignatures {
    // Returns the team identifier of a validly signed bundle, or an empty string if the valid signature has
    // no team (ad hoc). Returns std::nullopt if the bundle is unsigned or its signature is invalid.
    std::function<std::optional<std::string>(const std::string& bundle)> teamIdentifier;

    // Returns true if the bundle has a valid signature of this team and our bundle identifier.
    std::function<bool(const std::string& bundle, const std::string& team)> satisfiesRequirement;
};

// File operations on bundles. No operation follows a symbolic link in the last component of a path.
struct BundleFiles {
    using Done = std::expected<void, SystemError>;

    std::function<bool(const std::string& folder)> canWrite;

    // Copies the whole bundle with its attributes. Fails if `to` exists. A failure may leave a partial copy.
    std::function<Done(const std::string& from, const std::string& to)> copy;

    // Exchanges two bundles atomically. Both paths exist at every moment.
    std::function<Done(const std::string& one, const std::string& other)> exchange;

    // Fails if `to` exists.
    std::function<Done(const std::string& from, const std::string& to)> moveIntoEmptyPlace;

    // Moves the bundle to the user's trash. May prompt the user, so it can block for long.
    std::function<Done(const std::string& path)> trash;

    // Removes com.apple.quarantine from this entry only. Returns true if the attribute existed.
    std::function<std::expected<bool, SystemError>(const std::string& entry)> clearQuarantine;
};

// Operations on the other processes with our bundle identifier.
struct OtherCopies {
    // Returns the processes that started before this process. If two processes start at the same moment, the
    // list of exactly one of them contains the other process.
    std::function<std::vector<OtherCopy>()> startedBefore;

    // Reads the process table, because AppKit's list is stale while no main loop runs.
    std::function<bool(const OtherCopy&)> isRunning;

    // End the process, by a request to quit or by force. Return at once. Do nothing if the process has ended.
    std::function<void(const OtherCopy&)> terminate;
    std::function<void(const OtherCopy&)> forceTerminate;

    std::function<void(const OtherCopy&)> activate;  // brings the other copy to the front

    // Posts the distributed notification com.tarnik.node.showWindow for immediate delivery.
    std::function<void()> postShowWindow;
};

// The system operations for moving the application. They block, so don't call them on the main thread.
struct BundleOperations {
    // Absent if applications are not moved on this system. Then the other operations are also absent.
    std::function<OwnCopy()> ownCopy;

    CodeSignatures signatures;
    BundleFiles files;
    OtherCopies others;
};

}  // namespace tarnik
