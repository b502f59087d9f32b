#pragma once

#include <optional>
#include <string>

#include "core/node/NodeHome.h"
#include "core/node/NodeRelease.h"
#include "core/node/NodeRuntime.h"
#include "core/node/Provenance.h"

namespace tarnik {

// Updates the provenance record during an install: after each of the two swaps, so that the record agrees
// with the disk even if a later step fails. Failures are ignored, because an install must not fail for its
// record.
//
// Owned by one install, on its thread.
class InstallRecord {
public:
    // The signed release that the package belongs to.
    struct Release {
        std::string file;  // as received
        std::string version;
        std::string keyId;
        std::string platform;
    };

    InstallRecord(NodeHome home, Release release, ReleaseCrypto crypto);

    // Reads all files of a staged folder. Call it before the swap, while no other program uses the folder.
    // Blocks for about a second for 200 MB.
    std::optional<TreeListing> list(const std::string& staged) const;

    void runtimeReplaced(const NodeRuntime& runtime, std::optional<TreeListing> listing);
    void packageReplaced(const ReleaseArtifact& package, std::optional<TreeListing> listing);

    // The installed runtime has the right version, so it isn't replaced. If it was never recorded, its
    // present state is.
    void runtimeKept(const NodeRuntime& runtime);

private:
    Provenance::Tree tree(const std::string& version, const std::string& archive,
                          std::optional<TreeListing> listing) const;
    void takeRelease();

    const NodeHome home_;
    const Release release_;
    const ReleaseCrypto crypto_;
    Provenance record_;
};

}  // namespace tarnik
