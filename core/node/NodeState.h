#pragma once

#include <string>
#include <variant>

#include "core/foundation/Time.h"

namespace tarnik {

namespace NodeStates {

struct Restarting {  // the node has ended or didn't start, and is started again after the delay
    Seconds after;
    bool operator==(const Restarting&) const = default;
};
struct NotInstalled {  // the node home lacks the runtime or the helper package
    bool operator==(const NotInstalled&) const = default;
};
struct WaitingForLink {  // the node is installed, but this machine has not joined an account
    bool operator==(const WaitingForLink&) const = default;
};
struct Pairing {  // the connect command runs
    bool operator==(const Pairing&) const = default;
};
struct Running {  // the node runs, or a connect command has connected
    bool operator==(const Running&) const = default;
};
struct Stopped {  // stop() was called, or start() was not called yet
    bool operator==(const Stopped&) const = default;
};

}  // namespace NodeStates

// The state of the helper node, as its supervisor reports it.
using NodeState = std::variant<NodeStates::Restarting, NodeStates::NotInstalled, NodeStates::WaitingForLink,
                               NodeStates::Pairing, NodeStates::Running, NodeStates::Stopped>;

// Returns a short text for logs, such as "waitingForLink" or "restarting 0.25s".
std::string describe(const NodeState& state);

}  // namespace tarnik
