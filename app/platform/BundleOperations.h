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
    bool isTranslocated = false;              // the system runs it from a randomised read-only path
    std::optional<std::string> originalPath;  // the path before translocation, if the system knows it
    std::vector<std::string> arguments;
};

// Another process of the application. Process ids are reused, so the start time is part of its identity.
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

    // Returns true if this team validly signed the bundle with our bundle identifier.
    std::function<bool(const std::string& bundle, const std::string& team)> satisfiesRequirement;
};

// File operations on bundles. No operation follows a symbolic link in the last component of a path.
struct BundleFiles {
    using Done = std::expected<void, SystemError>;

    std::function<bool(const std::string& folder)> canWrite;

    // Copies the whole bundle with its attributes. Fails if `to` exists. A failure may leave a partial copy.
    std::function<Done(const std::string& from, const std::string& to)> copy;

    // Exchanges two bundles atomically: each path exists at every moment.
    std::function<Done(const std::string& one, const std::string& other)> exchange;

    // Fails if `to` exists.
    std::function<Done(const std::string& from, const std::string& to)> moveIntoEmptyPlace;

    // Moves the bundle to the user's trash. May prompt the user, so it can block for long.
    std::function<Done(const std::string& path)> trash;

    // Removes com.apple.quarantine from this entry only. Returns whether the attribute existed.
    std::function<std::expected<bool, SystemError>(const std::string& entry)> clearQuarantine;
};

// Operations on the other processes with our bundle identifier.
struct OtherCopies {
    // Returns the processes that started before this one. If two start together, exactly one of them has the
    // other in its list.
    std::function<std::vector<OtherCopy>()> startedBefore;

    // Reads the process table, because AppKit's list is stale while no main loop runs.
    std::function<bool(const OtherCopy&)> isRunning;

    // Ask the process to quit, politely or by force, and return at once. Do nothing if it has ended.
    std::function<void(const OtherCopy&)> terminate;
    std::function<void(const OtherCopy&)> forceTerminate;

    std::function<void(const OtherCopy&)> activate;  // brings it to the front

    // Posts the distributed notification com.tarnik.node.showWindow for immediate delivery.
    std::function<void()> postShowWindow;
};

// The system operations that moving the application needs. Never call them on the main thread.
struct BundleOperations {
    // Absent if applications are not moved on this system. The other operations are absent then, too.
    std::function<OwnCopy()> ownCopy;

    CodeSignatures signatures;
    BundleFiles files;
    OtherCopies others;
};

}  // namespace tarnik
