#include "core/node/NodeState.h"

namespace tarnik {

namespace {

// Rounds to milliseconds. The separator is always a point. printf(3) would write the locale's separator.
std::string secondsText(Seconds seconds) {
    const auto total = std::chrono::round<std::chrono::milliseconds>(seconds).count();
    std::string text = std::to_string(total / 1000);
    if (total % 1000 == 0) return text;
    std::string fraction = std::to_string(total % 1000 + 1000).substr(1);
    fraction.erase(fraction.find_last_not_of('0') + 1);
    return text + "." + fraction;
}

struct Text {
    std::string operator()(const NodeStates::Restarting& state) const {
        return "restarting " + secondsText(state.after) + "s";
    }
    std::string operator()(const NodeStates::NotInstalled&) const { return "notInstalled"; }
    std::string operator()(const NodeStates::WaitingForLink&) const { return "waitingForLink"; }
    std::string operator()(const NodeStates::Pairing&) const { return "pairing"; }
    std::string operator()(const NodeStates::Running&) const { return "running"; }
    std::string operator()(const NodeStates::Stopped&) const { return "stopped"; }
};

}  // namespace

std::string describe(const NodeState& state) {
    return std::visit(Text{}, state);
}

}  // namespace tarnik
