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

// Takes the node over from a launchd agent that a command-line install registered, so that only we run it.
// An agent that can't be proved to run this very node folder is left alone.
namespace tarnik::LaunchdTakeover {

struct LeaveAlone {
    std::string reason;
    bool operator==(const LeaveAlone&) const = default;
};
struct TakeOver {
    std::string plistPath;
    std::string serviceTarget;
    bool operator==(const TakeOver&) const = default;
};
struct Nothing {
    bool operator==(const Nothing&) const = default;
};
using Plan = std::variant<Nothing, LeaveAlone, TakeOver>;

struct Outcome {
    bool stopped = false;  // the agent is no longer loaded
    bool removed = false;  // its property list is gone
    bool operator==(const Outcome&) const = default;
};

// What taking over asks of the outside.
struct Deps {
    std::function<ExitStatus(const std::vector<std::string>& arguments)> launchctl;
    std::function<bool(const std::string& path)> removeFile;  // true when it did

    static Deps production();
};

using Resolve = std::function<std::string(const std::string& path)>;

std::string plistPath(std::string_view homeDirectory);

// `plist` is what stands in the agent's file, none when there is no file.
Plan plan(const std::optional<std::string>& plist, const std::string& plistPath, const NodeHome& home,
          std::uint32_t uid, const Resolve& resolve = resolvingLinks);

// Stops the agent and deletes its file; none when that isn't the plan. With the production record, blocks
// for as long as launchctl takes, half a minute and more at worst.
std::optional<Outcome> execute(const Plan& plan, const Deps& deps);

}  // namespace tarnik::LaunchdTakeover
