#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include <unistd.h>

#include "app/OwnBundle.h"
#include "app/ProcessGround.h"
#include "app/console/ConsoleOptions.h"
#include "app/console/ConsoleProgram.h"
#include "app/model/Machine.h"
#include "core/driver/BundledDriver.h"
#include "core/driver/ProcessInspection.h"
#include "core/foundation/Files.h"
#include "core/foundation/UserHome.h"
#include "core/node/NodeRelease.h"

extern char** environ;

namespace tarnik {
namespace {

constexpr int usageStatus = 2;

int refuse(const std::string& why) {
    std::fputs(("tarnik: " + why + "\n").c_str(), stderr);
    return usageStatus;
}

Environment inheritedEnvironment() {
    Environment environment;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const auto equals = text.find('=');
        if (equals != std::string::npos) environment.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
    return environment;
}

std::string homeDirectory(const Environment& environment) {
    const auto home = environment.find("HOME");
    return home != environment.end() && home->second.starts_with('/') ? home->second : userHome();
}

// The bundle that this program runs from.
std::optional<std::string> ownBundle() {
    const auto executable = ProcessInspection::executablePath(::getpid());
    return executable ? bundleOf(*executable) : std::nullopt;
}

std::optional<std::string> resourceFolder(const std::optional<std::string>& bundle) {
    if (!bundle) return std::nullopt;
    return *bundle + "/Contents/Resources";
}

// Makes the folder for application support, in which the driver's folder goes, where the system has none. All
// but the driver works without it.
std::string applicationSupport(const std::string& userFolder) {
    const std::string folder = userFolder + "/Library/Application Support";
    if (const auto made = createFolders(folder, 0700); !made) {
        std::fputs(("tarnik: " + describe(made.error()) + "\n").c_str(), stderr);
    }
    return folder;
}

Machine thisMachine(const std::optional<std::string>& bundle) {
    auto inherited = inheritedEnvironment();
    const std::string userFolder = homeDirectory(inherited);
    return {.userFolder = userFolder,
            .applicationSupport = applicationSupport(userFolder),
            .driverExecutable = BundledDriver::path(resourceFolder(bundle)),
            .inherited = std::move(inherited),
            .settings = bundle ? BuildSettings::fromBundle(*bundle) : BuildSettings::fromPropertyList({}),
            .platform = std::string(NodeRelease::hostPlatform)};
}

int run(const std::vector<std::string>& words) {
    const auto build = ConsoleOptions::thisBuild();
    const auto options = ConsoleOptions::parse(words, build);
    if (!options) return refuse(options.error());
    if (options->help) {
        std::fputs(ConsoleOptions::usage(build).c_str(), stdout);
        return EXIT_SUCCESS;
    }
    if (!options->console) return refuse("there is no window yet; start it with --console");
    if (options->bundle && !isFolder(*options->bundle)) {
        return refuse(*options->bundle + " isn't a bundle folder");
    }
    if (options->nodeHome && exists(*options->nodeHome) && !isFolder(*options->nodeHome)) {
        return refuse("the node folder " + *options->nodeHome + " isn't a folder");
    }
    const auto bundle = options->bundle ? options->bundle : ownBundle();
    return runConsole(*options, thisMachine(bundle), bundle);
}

}  // namespace
}  // namespace tarnik

int main(int argc, char** argv) {
    tarnik::layProcessGround();
    return tarnik::run(std::vector<std::string>(argv + 1, argv + argc));
}
