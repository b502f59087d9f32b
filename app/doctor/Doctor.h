#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "app/doctor/Finding.h"
#include "app/model/HostEnvironment.h"
#include "app/platform/BackgroundTasks.h"
#include "app/platform/BundleOperations.h"
#include "app/platform/LoginItemService.h"
#include "app/platform/SystemFolders.h"
#include "core/foundation/Http.h"
#include "core/foundation/WallTime.h"
#include "core/node/NodeHome.h"
#include "core/node/NodeRelease.h"

namespace tarnik {

// The installation that the doctor examines.
struct DoctorSubject {
    HostEnvironment host;
    SystemFolders folders;
    std::string executable;             // the one that users start
    std::optional<std::string> bundle;  // the bundle that contains it
    std::expected<NodeHome, NodeHome::ResolveError> home;

    std::string journal() const;  // the path of the journal file
};

// Facts that the running program reports.
struct RunningCopy {
    std::optional<pid_t> pid;
    bool hasWindow = true;  // false for a program in a terminal and for a service
    std::optional<bool> accessibility;
    std::optional<bool> screenRecording;
    std::optional<std::string> policy = {};  // its settings as one text; std::nullopt if unknown
};

// The operations of a desktop that the doctor asks. An operation is absent if the system doesn't have it, or
// if the program can't reach it without the toolkit; then its checks don't apply. No operation changes
// anything.
struct DoctorDesktop {
    std::function<OwnCopy()> ownCopy;       // where applications are moved into place
    std::string installPath;                // of the bundle, with ownCopy
    std::function<bool()> startsAtLogin;    // whether the system's list of login items has the program
    std::optional<std::string> agentPlist;  // the path of an old launchd agent, if the system has agents

    std::function<bool()> hasSessionBus;
    std::function<std::optional<bool>()> hasTray;             // std::nullopt if it can't be determined
    std::function<std::optional<std::string>()> linkHandler;  // the name of the entry that opens our links
    std::string autostartEntry;               // the path; empty if the system has no such entry
    std::function<bool()> startsByAutostart;  // whether this session starts tarnik by its entry
};

// The effects of the doctor. No operation changes anything. Each blocks for a limited time.
struct DoctorDeps {
    std::function<std::expected<HttpAnswer, HttpError>(const std::string& url, const HttpOptions& options)>
        ask;
    std::function<bool()> hasNetwork;  // an interface other than loopback is up and has an address
    std::function<WallTime()> now;
    std::function<std::optional<std::string>(const std::string& nodeBinary)> runtimeVersion;
    std::function<std::optional<std::uintmax_t>(const std::string& folder)> freeBytes;
    std::function<bool(const NodeHome&)> isLocked;            // another program has locked the home
    std::function<std::optional<RunningCopy>()> runningCopy;  // std::nullopt if no program answers
    std::function<bool(const std::string& label, BackgroundTasks::Task task)> detach;
    ReleaseCrypto crypto;
    DoctorDesktop desktop;

    // Transfers run as tasks of `tasks`. `running` is the answer of the running program.
    static DoctorDeps production(const DoctorSubject& subject, std::optional<RunningCopy> running,
                                 const BackgroundTasks& tasks);
};

// Examines the installation and calls `onFinding` for each finding as soon as it is known. Returns all
// findings. Changes nothing. Blocks for at most 20 s, even if no network answers.
//
// A finding of severity `error` hides the checks of its symptoms: see DoctorCheck.
std::vector<Finding> examine(
    const DoctorSubject& subject, const DoctorDeps& deps,
    const std::function<void(const Finding&)>& onFinding = [](const Finding&) {});

}  // namespace tarnik
