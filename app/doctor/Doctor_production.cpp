#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <sys/file.h>
#include <sys/socket.h>

#include "app/doctor/Doctor.h"
#include "app/doctor/DoctorDesktop.h"
#include "core/foundation/TextCleanup.h"
#include "core/foundation/UniqueFd.h"
#include "core/process/Spawner.h"

namespace tarnik {
namespace {

constexpr std::size_t outputLimit = 4096;

bool isOnNetwork() {
    ifaddrs* first = nullptr;
    if (::getifaddrs(&first) != 0) return true;  // unknown
    bool found = false;
    for (const auto* each = first; each != nullptr; each = each->ifa_next) {
        const bool isUp = (each->ifa_flags & IFF_UP) != 0 && (each->ifa_flags & IFF_LOOPBACK) == 0;
        const auto family = each->ifa_addr != nullptr ? each->ifa_addr->sa_family : AF_UNSPEC;
        found = found || (isUp && (family == AF_INET || family == AF_INET6));
    }
    ::freeifaddrs(first);
    return found;
}

std::optional<std::string> versionOf(const std::string& nodeBinary) {
    if (!isExecutableFile(nodeBinary)) return std::nullopt;
    const auto run = Spawner::run({.executable = nodeBinary,
                                   .arguments = {"--version"},
                                   .timeout = Seconds(4),
                                   .limit = outputLimit,
                                   .outputGrace = Seconds(0.5)});
    if (!run || !run->status.succeeded()) return std::nullopt;
    return std::string(trimWhitespace(run->text));
}

std::optional<std::uintmax_t> roomIn(const std::string& folder) {
    std::error_code error;
    const auto space = std::filesystem::space(folder, error);
    if (error) return std::nullopt;
    return space.available;
}

// Holds the lock only for this call. A program that starts meanwhile tries again.
bool isHeld(const NodeHome& home) {
    const UniqueFd folder(::open(home.path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return folder && ::flock(folder.get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

}  // namespace

DoctorDeps DoctorDeps::production(const DoctorSubject& subject, std::optional<RunningCopy> running,
                                  const BackgroundTasks& tasks) {
    const auto ask = [proxies = subject.host.proxies.lookup()](const std::string& url, HttpOptions options) {
        options.proxies = proxies;
        return Http::ask(url, options);
    };
    return {.ask = ask,
            .hasNetwork = isOnNetwork,
            .now = &std::chrono::system_clock::now,
            .runtimeVersion = versionOf,
            .freeBytes = roomIn,
            .isLocked = isHeld,
            .runningCopy = [running = std::move(running)] { return running; },
            .detach = [tasks](const std::string& label,
                              BackgroundTasks::Task task) { return tasks.start(label, std::move(task)); },
            .crypto = ReleaseCrypto::platform(),
            .desktop = doctorDesktop(subject)};
}

}  // namespace tarnik
