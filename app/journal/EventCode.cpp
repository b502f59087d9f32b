#include "app/journal/EventCode.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarnik {
namespace {

// In the order of EventCode.
constexpr std::array<std::string_view, static_cast<std::size_t>(EventCode::updateInstalled) + 1> names{
    "program.started",    "program.ended",      "program.secondStart", "program.anotherCopy",
    "program.relocation", "program.warning",    "home.unusable",       "install.begun",
    "install.step",       "install.refused",    "install.done",        "helper.started",
    "helper.startFailed", "helper.ended",       "helper.stopped",      "helper.restart",
    "helper.waiting",     "helper.missing",     "driver.started",      "driver.startFailed",
    "driver.ended",       "driver.stopped",     "driver.restart",      "driver.givenUp",
    "endpoint.published", "endpoint.withdrawn", "pairing.offered",     "pairing.begun",
    "pairing.refused",    "pairing.prompted",   "pairing.confirmed",   "pairing.connected",
    "pairing.ended",      "pairing.cancelled",  "switches.changed",    "update.waiting",
    "update.installed",
};

}  // namespace

std::string_view nameOf(EventCode code) {
    return names.at(static_cast<std::size_t>(code));
}

std::optional<EventCode> eventCodeOf(std::string_view name) {
    const auto* const found = std::ranges::find(names, name);
    if (found == names.end()) return std::nullopt;
    return static_cast<EventCode>(found - names.begin());
}

}  // namespace tarnik
