#include "core/node/InstallRecord.h"

#include <chrono>
#include <utility>

namespace tarnik {

InstallRecord::InstallRecord(NodeHome home, Release release, ReleaseCrypto crypto)
    : home_(std::move(home)),
      release_(std::move(release)),
      crypto_(std::move(crypto)),
      record_(Provenance::read(home_).value_or(Provenance())) {
    if (record_.package.listing.entries.empty()) takeRelease();
}

std::optional<TreeListing> InstallRecord::list(const std::string& staged) const {
    return TreeListing::of(staged, crypto_.sha256HexOfFile);
}

void InstallRecord::runtimeReplaced(const NodeRuntime& runtime, std::optional<TreeListing> listing) {
    record_.runtime = tree(runtime.version, runtime.sha256, std::move(listing));
    record_.write(home_);
}

void InstallRecord::packageReplaced(const ReleaseArtifact& package, std::optional<TreeListing> listing) {
    takeRelease();
    record_.package = tree(release_.version, package.sha256, std::move(listing));
    record_.write(home_);
}

void InstallRecord::runtimeKept(const NodeRuntime& runtime) {
    if (!record_.runtime.listing.entries.empty()) return;
    record_.runtime = tree(runtime.version, "", list(home_.runtimeDir()));
}

Provenance::Tree InstallRecord::tree(const std::string& version, const std::string& archive,
                                     std::optional<TreeListing> listing) const {
    Provenance::Tree tree{
        .version = version,
        .archive = archive,
        .installed = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()),
        .listing = std::move(listing).value_or(TreeListing())};
    tree.digest = crypto_.sha256Hex(tree.listing.text());
    return tree;
}

void InstallRecord::takeRelease() {
    record_.release = release_.file;
    record_.keyId = release_.keyId;
    record_.platform = release_.platform;
}

}  // namespace tarnik
