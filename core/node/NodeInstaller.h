#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>

#include "core/foundation/Url.h"
#include "core/node/InstallFailure.h"
#include "core/node/NodeHome.h"
#include "core/node/NodeRuntime.h"

namespace tarnik {

class InstallRecord;

// The effects of NodeInstaller. All operations block.
struct NodeInstallerDeps {
    // Returns the body of the response.
    std::function<std::expected<std::string, InstallError>(const std::string& url)> fetch;

    // Stores the body of the response in the file `destination`.
    std::function<std::expected<void, InstallError>(const std::string& url, const std::string& destination,
                                                    const Http::Progress& progress)>
        download;

    // Unpacks an archive, without its outermost folder, into an existing folder.
    std::function<std::expected<void, InstallError>(const std::string& archive, const std::string& folder)>
        extract;

    // Returns the output of `node --version`, or std::nullopt if the command fails.
    std::function<std::optional<std::string>(const std::string& nodeBinary)> runtimeVersion;

    ReleaseCrypto crypto;

    // Uses the network, tar, the installed runtime and the system's cryptography.
    static NodeInstallerDeps production(const ProxyLookup& proxies = {},
                                        const std::string& tar = "/usr/bin/tar");
};

// Installs the pinned Node.js runtime and the signed helper package in the node home.
//
// The runtime is kept if it has the pinned version. Any other archive is downloaded into a staging folder,
// checked and unpacked. Two renames then replace the
// installed folder: the old folder moves into the staging folder, and the new folder takes its place. So the
// runtime and the package are each complete or absent at every moment. After a crash, the next install adds
// the missing folder. The provenance record is updated after each replacement.
//
// install() blocks. Call it on a background thread, one call at a time. A refused package leaves the
// installed package unchanged. A failure before the home is claimed leaves the disk unchanged.
class NodeInstaller {
public:
    struct Settings {
        std::optional<Url> releaseBase;
        std::optional<std::string> releasePublicKey;  // base64url of 32 bytes
        std::string platform;                         // as releases name it, such as "darwin-arm64"
        std::optional<std::string> minimumVersion;    // older releases are refused
        std::optional<NodeRuntime> runtime;           // of the build; see NodeRuntimePin::runtimeFor()
    };

    // Called on the installer's thread.
    struct Progress {
        std::function<void(const std::string&)> text;
        Http::Progress bytes = {};  // of the download that the last text announced
    };

    NodeInstaller(NodeHome home, Settings settings, NodeInstallerDeps deps);

    std::expected<void, InstallError> install(const Progress& progress) const;

    // Returns the version of the installed package; see InstalledVersion.h. Returns an empty text if the
    // version can't be read. install() then refuses every release.
    std::optional<std::string> installedVersion() const;

private:
    struct Sources;
    class Stage;

    std::expected<Sources, InstallError> chooseSources() const;
    std::expected<void, InstallError> checkVersion(const std::string& version) const;
    std::expected<void, InstallError> claim() const;
    std::expected<void, InstallError> installRuntime(const Sources& sources, const Stage& stage,
                                                     const Progress& progress, InstallRecord& record) const;
    std::expected<void, InstallError> installPackage(const Sources& sources, const Stage& stage,
                                                     const Progress& progress, InstallRecord& record) const;
    std::expected<void, InstallError> replace(const std::string& target, const std::string& staged,
                                              const Stage& stage) const;

    const NodeHome home_;
    const Settings settings_;
    const NodeInstallerDeps deps_;
};

}  // namespace tarnik
