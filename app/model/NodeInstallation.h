#pragma once

#include <expected>
#include <string>

#include "app/platform/SystemLog.h"
#include "core/node/LaunchdTakeover.h"
#include "core/node/NodeInstaller.h"

namespace tarnik {

// What has to be done before the helper can be started: ends an agent that a command-line install left
// behind, and installs the helper where there is none. A value, used on a background thread.
struct NodeInstallation {
    NodeHome home;
    std::string userFolder;
    NodeInstaller::Settings settings;
    NodeInstallerDeps installer;
    LaunchdTakeover::Deps launchd;
    SystemLog log;  // hears of the agent; nothing about it stops the rest

    // Blocks for as long as launchctl, the network and tar take.
    std::expected<void, InstallError> run(const NodeInstaller::Progress& progress) const;

private:
    void takeOverAgent() const;
};

}  // namespace tarnik
