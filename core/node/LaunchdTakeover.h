#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/foundation/Paths.h"
#include "core/node/NodeHome.h"
#include "core/process/ExitStatus.h"

// Removes the launchd agent that a command-line install registers, so that only the supervisor runs the node.
// An agent that doesn't provably run our node home is left unchanged.
namespace tarnik::LaunchdTakeover {

// The agent is not ours, or its property list is malformed.
struct LeaveAlone {
    std::string reason;
    bool operator==(const LeaveAlone&) const = default;
};
// The agent runs our node home.
struct TakeOver {
    std::string plistPath;
    std::string serviceTarget;
    bool operator==(const TakeOver&) const = default;
};
// The agent's file is missing or can't be read.
struct Nothing {
    bool operator==(const Nothing&) const = default;
};
using Plan = std::variant<Nothing, LeaveAlone, TakeOver>;

// The result of a takeover.
struct Outcome {
    bool stopped = false;  // the agent is no longer loaded
    bool removed = false;  // the agent's property list was deleted
    bool operator==(const Outcome&) const = default;
};

// The effects of a takeover.
struct Deps {
    std::function<ExitStatus(const std::vector<std::string>& arguments)> launchctl;
    std::function<bool(const std::string& path)> removeFile;  // returns true on success

    static Deps production();
};

using Resolve = std::function<std::string(const std::string& path)>;

std::string plistPath(std::string_view homeDirectory);

// Decides whether the agent is taken over. `plist` is the content of the agent's file, or std::nullopt if the
// file is missing or can't be read.
Plan plan(const std::optional<std::string>& plist, const std::string& plistPath, const NodeHome& home,
          std::uint32_t uid, const Resolve& resolve = resolvingLinks);

// Stops the agent and deletes its file. Does nothing and returns std::nullopt unless the plan is TakeOver.
// Blocks while launchctl runs twice. Each run has a time-out of 30 s.
std::optional<Outcome> execute(const Plan& plan, const Deps& deps);

}  // namespace tarnik::LaunchdTakeover
