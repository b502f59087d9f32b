#include "app/ProgramStart.h"

#include <cstdio>
#include <utility>

#include <unistd.h>

#include "app/texts/FailureTexts.h"
#include "core/driver/DriverLaunch.h"
#include "core/driver/ProcessInspection.h"
#include "core/foundation/Files.h"
#include "core/node/NodeRelease.h"
#include "core/process/Environment.h"

namespace tarnik {
namespace {

constexpr int usageStatus = 2;

std::string userFolderOf(const Environment& environment) {
    const std::string home = environmentValue(environment, "HOME");
    return home.starts_with('/') ? home : homeDirectory();
}

std::optional<std::string> resourceFolder(const std::optional<std::string>& bundle) {
    if (!bundle) return std::nullopt;
    return *bundle + "/Contents/Resources";
}

// Without this folder everything but the driver works.
void makeApplicationSupport(const std::string& folder) {
    if (const auto made = createFolders(folder, 0700); !made) {
        printError(messageFor(made.error()));
    }
}

HostEnvironment hostOf(Environment inherited, std::string userFolder, const ProgramLocation& place) {
    makeApplicationSupport(place.folders.applicationSupport);
    return {.userFolder = std::move(userFolder),
            .applicationSupport = place.folders.applicationSupport,
            .nodeLog = place.folders.stateFolder() + "/node.log",
            .driverExecutable = BundledDriver::path(resourceFolder(place.bundle)),
            .inherited = std::move(inherited),
            .settings = place.bundle ? BuildSettings::fromBundle(*place.bundle) : BuildSettings::defaults(),
            .platform = std::string(NodeRelease::hostPlatform)};
}

// Returns why the program can't run with this command line, or std::nullopt.
std::optional<std::string> problemWith(const CommandLine& line) {
    if (line.bundle && !isFolder(*line.bundle)) return *line.bundle + " isn't a bundle folder";
    if (line.nodeHome && exists(*line.nodeHome) && !isFolder(*line.nodeHome))
        return "the node folder " + *line.nodeHome + " isn't a folder";
    return std::nullopt;
}

}  // namespace

void printError(const std::string& what) {
    std::fputs(("tarnik: " + what + "\n").c_str(), stderr);
}

int refuseStart(const std::string& why) {
    printError(why);
    return usageStatus;
}

int runProgram(const CommandLine& line, const char* name, const ProgramFace& face) {
    if (const auto wrong = problemWith(line)) return refuseStart(*wrong);
    auto environment = currentEnvironment();
    auto userFolder = userFolderOf(environment);
    const auto executable = ProcessInspection::executablePath(::getpid()).value_or(name);
    const ProgramLocation place{.executable = executable,
                                .bundle = line.bundle ? line.bundle : bundleOf(executable),
                                .folders = SystemFolders::of(environment, userFolder)};
    auto host = hostOf(std::move(environment), std::move(userFolder), place);
    return face(line, std::move(host), place);
}

}  // namespace tarnik
