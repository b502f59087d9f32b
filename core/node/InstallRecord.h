#pragma once

#include <optional>
#include <string>

#include "core/node/NodeHome.h"
#include "core/node/NodeRelease.h"
#include "core/node/NodeRuntime.h"
#include "core/node/Provenance.h"

namespace tarnik {

// Updates the provenance record during an install. Each replaced folder is recorded at once, so that the
// record agrees with the disk even if a later step fails. Failures are ignored, because a failed record must
// not make the install fail.
//
// Owned by one install and used on the install's thread.
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

    // Lists a staged folder and reads all its files. Call this before the replacement, while no other program
    // uses the folder. Blocks for about a second for 200 MB.
    std::optional<TreeListing> list(const std::string& staged) const;

    void runtimeReplaced(const NodeRuntime& runtime, std::optional<TreeListing> listing);
    void packageReplaced(const ReleaseArtifact& package, std::optional<TreeListing> listing);

    // Called if the installed runtime has the right version and isn't replaced. Lists the runtime if it was
    // never recorded. packageReplaced() then writes the record.
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
