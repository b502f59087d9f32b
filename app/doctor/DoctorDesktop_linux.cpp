#include "app/doctor/DoctorDesktop.h"

#include <algorithm>

#include <sys/socket.h>
#include <sys/stat.h>

#include "app/platform/AutostartEntry.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/foundation/TextCleanup.h"
#include "core/process/Spawner.h"

namespace tarnik {
namespace {

constexpr Seconds queryTimeout = Seconds(2);
constexpr std::size_t outputLimit = 4096;

// Runs a program that only asks. Returns std::nullopt if it isn't installed or fails.
std::optional<std::string> answerOf(const std::string& program, std::vector<std::string> arguments,
                                    const Environment& environment) {
    if (!isExecutableFile(program)) return std::nullopt;
    const auto run = Spawner::run({.executable = program,
                                   .arguments = std::move(arguments),
                                   .environment = environment,
                                   .timeout = queryTimeout,
                                   .limit = outputLimit,
                                   .outputGrace = Seconds(0.5)});
    if (!run || !run->status.succeeded()) return std::nullopt;
    return std::string(trimWhitespace(run->text));
}

// The library finds the bus by its variable, or by the socket in the runtime folder.
bool hasSessionBus(const Environment& environment) {
    if (!environmentValue(environment, "DBUS_SESSION_BUS_ADDRESS").empty()) return true;
    const auto folder = environmentValue(environment, "XDG_RUNTIME_DIR");
    struct stat found{};
    return !folder.empty() && ::stat((folder + "/bus").c_str(), &found) == 0 && S_ISSOCK(found.st_mode);
}

std::optional<bool> hasTray(const Environment& environment) {
    const auto answer =
        answerOf("/usr/bin/dbus-send",
                 {"--session", "--print-reply=literal", "--reply-timeout=1000", "--dest=org.freedesktop.DBus",
                  "/org/freedesktop/DBus", "org.freedesktop.DBus.NameHasOwner",
                  "string:org.kde.StatusNotifierWatcher"},
                 environment);
    if (!answer) return std::nullopt;
    return answer->contains("true");
}

std::optional<std::string> linkHandler(const Environment& environment) {
    return answerOf("/usr/bin/xdg-mime",
                    {"query", "default", "x-scheme-handler/" + std::string(TarnikIdentity::urlScheme)},
                    environment);
}

}  // namespace

DoctorDesktop doctorDesktop(const DoctorSubject& subject) {
    const auto& environment = subject.host.inherited;
    const AutostartEntry entry(subject.folders, environment, subject.executable);
    return {.ownCopy = {},
            .installPath = {},
            .startsAtLogin = {},
            .agentPlist = {},
            .hasSessionBus = [environment] { return hasSessionBus(environment); },
            .hasTray = [environment] { return hasTray(environment); },
            .linkHandler = [environment] { return linkHandler(environment); },
            .autostartEntry = AutostartEntry::entryPath(subject.folders),
            .startsByAutostart = [entry] { return entry.state() == LoginItemState::on; }};
}

}  // namespace tarnik
