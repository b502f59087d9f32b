#include "app/console/HeadlessPlatform.h"

namespace tarnik {
namespace {

UserDefaults noDefaults() {
    return {.text = [](const std::string&) { return std::nullopt; },
            .flag = [](const std::string&) { return false; },
            .setFlag = [](const std::string&) {},
            .clearFlag = [](const std::string&) {}};
}

SystemEvents noEvents() {
    return {.onLink = [](const auto&) {},
            .onSecondOpen = [](const auto&) {},
            .onBecameActive = [](const auto&) {}};
}

}  // namespace

Application::Platform headlessPlatform(const MainThread& mainThread, const SwitchOperations& switches,
                                       const SystemLog& log) {
    return {.model = {.mainThread = mainThread,
                      .defaults = noDefaults(),
                      .switches = switches,
                      .log = log,
                      .windowInUse = [] { return false; }},
            .updaterLog = log,
            .events = noEvents()};
}

}  // namespace tarnik
