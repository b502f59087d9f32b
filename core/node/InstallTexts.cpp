// The texts of this folder that are shown to the user.
#include "core/node/InstallTexts.h"

#include "core/node/InstallFailure.h"

namespace tarnik {

std::string InstallTexts::downloadingRuntime(const std::string& version) {
    return "Downloading Node.js " + version + "…";
}

std::string InstallTexts::downloadingPackage() {
    return "Downloading tarnik's helper…";
}

std::string describe(const NodeHome::ResolveError& error) {
    using enum NodeHome::ResolveError::Reason;
    switch (error.reason) {
        case notAbsolute:
            return "The node folder must be a full path (starting with /), not " + error.path + ".";
        case reserved:
            return "The node folder can't be " + error.path +
                   ", which holds other things. Pick a new or empty folder.";
        case overlapsDefault: break;
    }
    return "The test node folder " + error.path + " can't be inside ~/.tarnik/node or contain it.";
}

std::string describe(const NodeHome::ClaimError& error) {
    using enum NodeHome::ClaimError::Reason;
    switch (error.reason) {
        case notAFolder: return error.path + " isn't a folder. Nothing was installed.";
        case isALink: return error.path + " is a link, and tarnik leaves links alone. Nothing was installed.";
        case holdsOtherFiles: break;
    }
    return error.path +
           " already holds files tarnik didn't put there. Move them out, then try again. Nothing was "
           "installed.";
}

std::string describe(const NodeHome::ClaimFailure& failure) {
    return std::visit([](const auto& error) { return describe(error); }, failure);
}

std::string NodeRelease::describe(const Failure& failure) {
    using enum Failure::Reason;
    switch (failure.reason) {
        case wrongKey: return "the release is signed with key " + failure.keyId + ", not this build's";
        case noKey: return "this build carries no release key";
        case notJSON: return "the release file is not JSON";
        case shape: return "the release file is not in the expected shape";
        case badSignature: return "the release signature does not verify";
        case wrongChannel: break;
    }
    return "the stable file carries another channel";
}

std::string describe(const InstallFailure& failure) {
    using enum InstallFailure::Kind;
    switch (failure.kind) {
        case noArtifact: return "tarnik's helper isn't published for this Mac (" + failure.what + ") yet.";
        case download: return "Couldn't download " + failure.what + ". Check your connection and try again.";
        case checksum: return failure.what + " didn't match its signed release. Nothing was installed.";
        case extract: return "Couldn't unpack tarnik's helper (" + failure.what + "). Nothing was installed.";
        case notOurFolder: return failure.what + " isn't tarnik-node's own folder. Nothing was installed.";
        case tooOld:
            return "tarnik's helper " + failure.what +
                   " is older than this Mac may install. Nothing was installed.";
        case notPublished: return "tarnik's helper isn't published for this Mac yet.";
        case incomplete: break;
    }
    return "tarnik's helper is missing a file. Nothing was installed.";
}

std::string describe(const ToolStartError& error) {
    return describe(error.error);
}

std::string describe(const InstallError& error) {
    return std::visit([](const auto& one) { return describe(one); }, error);
}

}  // namespace tarnik
