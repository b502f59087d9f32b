#include "core/node/InstallTexts.h"

#include "core/foundation/Placeholders.h"
#include "core/node/InstallFailure.h"

namespace tarnik {

std::string InstallTexts::downloadingRuntime(const std::string& version) {
    return filled(runtimeStep, {{"version", version}});
}

std::string InstallTexts::downloadingPackage() {
    return std::string(packageStep);
}

std::string describe(const NodeHome::ResolveError& error) {
    using enum NodeHome::ResolveError::Reason;
    const Placeholders path{{"path", error.path}};
    switch (error.reason) {
        case notAbsolute: return filled(InstallTexts::notAbsolute, path);
        case reserved: return filled(InstallTexts::reserved, path);
        case overlapsDefault: break;
    }
    return filled(InstallTexts::overlapsDefault, path);
}

std::string describe(const NodeHome::ClaimError& error) {
    using enum NodeHome::ClaimError::Reason;
    const Placeholders path{{"path", error.path}};
    switch (error.reason) {
        case notAFolder: return filled(InstallTexts::notAFolder, path);
        case isALink: return filled(InstallTexts::isALink, path);
        case holdsOtherFiles: break;
    }
    return filled(InstallTexts::holdsOtherFiles, path);
}

std::string describe(const NodeHome::ClaimFailure& failure) {
    return std::visit([](const auto& error) { return describe(error); }, failure);
}

std::string NodeRelease::describe(const Failure& failure) {
    using enum Failure::Reason;
    switch (failure.reason) {
        case wrongKey: return filled(InstallTexts::wrongKey, {{"key", failure.keyId}});
        case noKey: return std::string(InstallTexts::noKey);
        case notJSON: return std::string(InstallTexts::notJSON);
        case shape: return std::string(InstallTexts::shape);
        case badSignature: return std::string(InstallTexts::badSignature);
        case wrongChannel: break;
    }
    return std::string(InstallTexts::wrongChannel);
}

std::string describe(const InstallFailure& failure) {
    using enum InstallFailure::Kind;
    switch (failure.kind) {
        case noArtifact: return filled(InstallTexts::noArtifact, {{"platform", failure.what}});
        case download: return filled(InstallTexts::download, {{"what", failure.what}});
        case checksum: return filled(InstallTexts::checksum, {{"what", failure.what}});
        case extract: return filled(InstallTexts::extract, {{"reason", failure.what}});
        case notOurFolder: return filled(InstallTexts::notOurFolder, {{"path", failure.what}});
        case tooOld: return filled(InstallTexts::tooOld, {{"version", failure.what}});
        case notPublished: return std::string(InstallTexts::notPublished);
        case incomplete: break;
    }
    return std::string(InstallTexts::incomplete);
}

std::string describe(const ToolStartError& error) {
    return describe(error.error);
}

std::string describe(const InstallError& error) {
    return std::visit([](const auto& one) { return describe(one); }, error);
}

}  // namespace tarnik
