#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>

#include "core/foundation/Http.h"
#include "core/node/InstallFailure.h"
#include "core/node/ReleaseCrypto.h"

namespace tarnik {

// Everything NodeInstaller asks of the outside. All of it blocks.
struct NodeInstallerDeps {
    // The body at an address.
    std::function<std::expected<std::string, InstallError>(const std::string& url)> fetch;

    // Stores the body at `destination`; `progress` may be told how far it is.
    std::function<std::expected<void, InstallError>(const std::string& url, const std::string& destination,
                                                    const Http::Progress& progress)>
        download;

    // Unpacks an archive, without its outermost folder, into a folder that is there.
    std::function<std::expected<void, InstallError>(const std::string& archive, const std::string& folder)>
        extract;

    // What a node executable says its version is, such as "v24.22.1".
    std::function<std::optional<std::string>(const std::string& nodeBinary)> runtimeVersion;

    ReleaseCrypto crypto;

    // The network, tar, the installed runtime itself, the system's cryptography.
    static NodeInstallerDeps production(const std::string& tar = "/usr/bin/tar");
};

}  // namespace tarnik
