#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string>

#include "core/node/NodeInstaller.h"
#include "core/node/TreeListing.h"

namespace tarnik {

// Checks a published release: installs it for each of its platforms in a temporary node home, with the
// installer of the program, and inspects the unpacked files.
//
// Owned by main(). run() blocks until all archives are downloaded.
class ReleaseCheck {
public:
    struct Request {
        Url base;
        std::string publicKey;  // base64url of 32 bytes
        std::string folder;     // exists and is empty; the temporary node homes are created in it
        std::optional<std::string> minimumVersion = {};  // of the program
        std::optional<std::string> installedVersion = {};
        std::optional<NodeRuntime> runtime = {};  // is downloaded too, for its platform
    };

    // Called with each finding, which is one sentence.
    using Report = std::function<void(const std::string& sentence)>;

    ReleaseCheck(Request request, NodeInstallerDeps deps);

    // Returns the sentence of the first problem.
    std::expected<void, std::string> run(const Report& report) const;

private:
    std::expected<void, std::string> check(const NodeReleaseManifest& manifest, const std::string& platform,
                                           const Report& report) const;
    // Returns the size of the package's archive in bytes.
    std::expected<std::int64_t, std::string> install(const NodeHome& home, const std::string& platform) const;

    const Request request_;
    const NodeInstallerDeps deps_;
};

// Returns the path of the first file that must not be in a package: a link to a place outside `folder`, a
// device, socket or pipe, or a file that runs with its owner's rights. Returns std::nullopt if none exists.
std::optional<std::string> foreignFile(const TreeListing& listing);

}  // namespace tarnik
