#include "app/ProgramStart.h"

#include <cstdio>
#include <utility>

#include <unistd.h>

#include "app/options/ExitCode.h"
#include "app/platform/SystemProxies.h"
#include "app/policy/ManagedSettings.h"
#include "app/texts/FailureTexts.h"
#include "core/driver/DriverLaunch.h"
#include "core/driver/ProcessInspection.h"
#include "core/foundation/Files.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/node/NodeRelease.h"

namespace tarnik {
namespace {

std::string userFolderOf(const Environment& environment) {
    const std::string home = environmentValue(environment, "HOME");
    return home.starts_with('/') ? home : homeDirectory();
}

std::optional<std::string> resourceFolder(const std::optional<std::string>& bundle) {
    if (!bundle) return std::nullopt;
    return *bundle + "/Contents/Resources";
}

// Only reports a failure, because the helper works without this folder.
void makeApplicationSupport(const std::string& folder) {
    if (const auto made = createFolders(folder, 0700); !made) {
        printError(messageFor(made.error()));
    }
}

// The executables of the program are in one folder. Users, the login item and the desktop start the
// executable that is named after the application.
std::string startedByUsers(const std::string& executable) {
    const auto slash = executable.rfind('/');
    if (slash == std::string::npos) return executable;
    auto front = executable.substr(0, slash + 1) + std::string(TarnikIdentity::appName);
    return isExecutableFile(front) ? front : executable;
}

// Returns the reason why the program can't run with this command line, or std::nullopt.
std::optional<std::string> problemWith(const CommandLine& line, const std::string& userFolder) {
    if (const auto home = NodeHome::resolve(line.nodeHome, userFolder); !home) return describe(home.error());
    if (line.bundle && !isFolder(*line.bundle)) return *line.bundle + " isn't a bundle folder";
    if (line.nodeHome && exists(*line.nodeHome) && !isFolder(*line.nodeHome))
        return *line.nodeHome + " isn't a folder, so the helper can't be installed there";
    return std::nullopt;
}

}  // namespace

void printError(const std::string& what) {
    std::fputs(("tarnik: " + what + "\n").c_str(), stderr);
}

int refuseStart(const std::string& why) {
    printError(why);
    return exitStatus(ExitCode::wrongUse);
}

ProgramRun ProgramRun::current(const std::optional<std::string>& bundle, const char* name) {
    auto environment = currentEnvironment();
    auto userFolder = userFolderOf(environment);
    const auto executable = startedByUsers(ProcessInspection::executablePath(::getpid()).value_or(name));
    ProgramLocation place{.executable = executable,
                          .bundle = bundle ? bundle : bundleOf(executable),
                          .folders = SystemFolders::of(environment, userFolder)};
    return {.environment = std::move(environment),
            .userFolder = std::move(userFolder),
            .place = std::move(place)};
}

HostEnvironment ProgramRun::host() const {
    const auto build = place.bundle ? BuildSettings::fromBundle(*place.bundle) : BuildSettings::defaults();
    using PolicyParser::Releases;
    auto policy =
        currentPolicy(environment, build.policyMaySetReleases ? Releases::bySettings : Releases::fixed);
    auto settings = managedSettings(build, policy.policy);
    auto proxies = managedProxies({.environment = environment, .desktop = systemProxies()}, policy.policy);
    return {.userFolder = userFolder,
            .applicationSupport = place.folders.applicationSupport,
            .nodeLog = place.folders.stateFolder() + "/node.log",
            .driverExecutable = BundledDriver::path(resourceFolder(place.bundle)),
            .inherited = environment,
            .settings = std::move(settings),
            .policy = std::move(policy),
            .platform = std::string(NodeRelease::hostPlatform),
            .proxies = std::move(proxies)};
}

int runProgram(const CommandLine& line, const char* name, const ProgramFace& face) {
    const auto run = ProgramRun::current(line.bundle, name);
    if (const auto wrong = problemWith(line, run.userFolder)) return refuseStart(*wrong);
    makeApplicationSupport(run.place.folders.applicationSupport);
    return face(line, run.host(), run.place);
}

}  // namespace tarnik
