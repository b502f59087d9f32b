#pragma once

#include <string>
#include <variant>

#include "core/foundation/Time.h"

namespace tarnik {

namespace NodeStates {

struct Restarting {  // the node ended and starts again after this delay
    Seconds after;
    bool operator==(const Restarting&) const = default;
};
struct NotInstalled {  // the node home lacks the runtime or the helper package
    bool operator==(const NotInstalled&) const = default;
};
struct WaitingForLink {  // installed, but this Mac has not joined an account
    bool operator==(const WaitingForLink&) const = default;
};
struct Pairing {  // the connect command runs
    bool operator==(const Pairing&) const = default;
};
struct Running {  // the node runs, or the connect command has connected
    bool operator==(const Running&) const = default;
};
struct Stopped {  // nobody wants it to run, or it was not started yet
    bool operator==(const Stopped&) const = default;
};

}  // namespace NodeStates

// What the helper node is doing, as its supervisor reports it.
using NodeState = std::variant<NodeStates::Restarting, NodeStates::NotInstalled, NodeStates::WaitingForLink,
                               NodeStates::Pairing, NodeStates::Running, NodeStates::Stopped>;

// "waitingForLink", "restarting 1s", "restarting 0.25s"
std::string describe(const NodeState& state);

}  // namespace tarnik
