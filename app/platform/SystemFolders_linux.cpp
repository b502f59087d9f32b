#include "app/platform/SystemFolders.h"

namespace tarnik {

SystemFolders SystemFolders::of(const Environment& environment, const std::string& userFolder) {
    const auto folder = [&](const std::string& variable, const std::string& otherwise) {
        const std::string value = environmentValue(environment, variable);
        if (!value.starts_with('/')) return userFolder + otherwise;
        return value.substr(0, value.find_last_not_of('/') + 1);  // npos + 1 is 0
    };
    return {.applicationSupport = folder("XDG_DATA_HOME", "/.local/share"),
            .logs = folder("XDG_STATE_HOME", "/.local/state"),
            .preferences = folder("XDG_CONFIG_HOME", "/.config")};
}

}  // namespace tarnik
