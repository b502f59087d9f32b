#include "app/relocation/RelaunchCommand.h"

#include "core/process/Spawner.h"
#include "core/relocation/Relocation.h"

namespace tarnik {

SpawnRequest relaunchAfter(pid_t old, const std::string& bundle) {
    constexpr const char* line =
        "while /bin/kill -0 \"$1\" 2>/dev/null; do /bin/sleep 0.1; done; "
        "exec /usr/bin/open -n \"$2\" --args \"$3\"";
    return {.executable = "/bin/sh",
            .arguments = {"-c", line, "sh", std::to_string(old), bundle,
                          std::string(Relocation::relaunchArgument)},
            .environment = {{"PATH", Spawner::defaultPath}}};
}

}  // namespace tarnik
