#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>

#include "core/foundation/Url.h"
#include "core/node/InstallFailure.h"
#include "core/node/NodeHome.h"
#include "core/node/NodeInstallerDeps.h"
#include "core/node/NodeRuntime.h"

namespace tarnik {

// Puts a working helper into the node home: the pinned Node.js runtime and the signed helper package, each
// swapped in only after it was downloaded into a staging folder, checked and unpacked.
//
// One install at a time, on a background thread: it blocks for as long as the network and tar take. A refusal
// leaves the installed helper as it was, and one before the home was claimed leaves the disk so too.
//
// What is taken out goes into the staging folder in one step, and what comes in leaves it in one. So at every
// moment the runtime and the package are each there whole or not at all, and a start after a crash installs
// what is missing.
class NodeInstaller {
public:
    struct Settings {
        std::optional<Url> releaseBase;
        std::optional<std::string> releasePublicKey;  // base64url of 32 bytes
        std::string platform;                         // as releases name it: "darwin-arm64"
        std::optional<std::string> minimumVersion;    // no older release is installed
        std::optional<NodeRuntime>
            developmentRuntime;  // for a platform without a pinned one; never in a release
    };

    // Both run on the installer's thread.
    struct Progress {
        std::function<void(const std::string&)> text;
        Http::Progress bytes = {};  // of the download that the last text announced
    };

    NodeInstaller(NodeHome home, Settings settings, NodeInstallerDeps deps);

    std::expected<void, InstallError> install(const Progress& progress) const;

    // The version that the installed package says of itself; no version at all, and so newer than any, when
    // that description is too long.
    std::optional<std::string> installedVersion() const;

private:
    struct Sources;
    class Stage;

    std::expected<Sources, InstallError> chooseSources() const;
    std::expected<void, InstallError> checkVersion(const std::string& version) const;
    std::optional<NodeRuntime> runtime() const;
    std::expected<void, InstallError> claim() const;
    std::expected<void, InstallError> installRuntime(const Sources& sources, const Stage& stage,
                                                     const Progress& progress) const;
    std::expected<void, InstallError> installPackage(const Sources& sources, const Stage& stage,
                                                     const Progress& progress) const;
    std::expected<void, InstallError> replace(const std::string& target, const std::string& staged,
                                              const Stage& stage) const;

    const NodeHome home_;
    const Settings settings_;
    const NodeInstallerDeps deps_;
};

}  // namespace tarnik
