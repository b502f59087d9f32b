#include "app/platform/SystemFolders.h"

namespace tarnik {

SystemFolders SystemFolders::of(const Environment& environment, const std::string& userFolder) {
    const auto folder = [&](const std::string& variable, const std::string& otherwise) {
        const auto set = environment.find(variable);
        if (set == environment.end() || !set->second.starts_with('/')) return userFolder + otherwise;
        const auto last = set->second.find_last_not_of('/');
        return last == std::string::npos ? std::string() : set->second.substr(0, last + 1);
    };
    return {.applicationSupport = folder("XDG_DATA_HOME", "/.local/share"),
            .logs = folder("XDG_STATE_HOME", "/.local/state"),
            .preferences = folder("XDG_CONFIG_HOME", "/.config")};
}

}  // namespace tarnik
