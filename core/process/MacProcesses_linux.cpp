#include "core/process/MacProcesses.h"

#include "core/process/ProcFolder.h"
#include "core/process/ProcessTree.h"

namespace tarnik::MacProcesses {

std::optional<std::vector<ProcessEntry>> table() {
    return ProcFolder().entries();
}

std::optional<std::vector<ProcessEntry>> tableUnder(pid_t ancestor) {
    ProcFolder folder;
    const ProcessTree tree{.children = [&folder](pid_t pid) { return folder.children(pid); },
                           .entry = [&folder](pid_t pid) -> std::optional<ProcessEntry> {
                               auto found = folder.entry(pid);
                               if (!found) return std::nullopt;
                               return std::move(*found);
                           }};
    if (auto family = tree.under(ancestor)) return family;
    return folder.entries();
}

std::optional<std::string> executablePath(pid_t pid) {
    return ProcFolder().program(pid);
}

std::optional<double> cpuSeconds(pid_t pid) {
    ProcFolder folder;
    const auto stat = folder.stat(pid);
    if (!stat) return std::nullopt;
    return static_cast<double>(stat->userTicks + stat->systemTicks) /
           static_cast<double>(folder.ticksPerSecond());
}

}  // namespace tarnik::MacProcesses
