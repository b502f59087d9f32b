#include "core/node/InstallFailure.h"

namespace tarnik {

std::string describe(const InstallFailure& failure) {
    using Kind = InstallFailure::Kind;
    switch (failure.kind) {
        case Kind::noArtifact:
            return "tarnik's helper isn't published for this Mac (" + failure.what + ") yet.";
        case Kind::download:
            return "Couldn't download " + failure.what + ". Check your connection and try again.";
        case Kind::checksum: return failure.what + " didn't match its signed release. Nothing was installed.";
        case Kind::extract:
            return "Couldn't unpack tarnik's helper (" + failure.what + "). Nothing was installed.";
        case Kind::notOurFolder:
            return failure.what + " isn't tarnik-node's own folder. Nothing was installed.";
        case Kind::tooOld:
            return "tarnik's helper " + failure.what +
                   " is older than this Mac may install. Nothing was installed.";
        case Kind::notPublished: return "tarnik's helper isn't published for this Mac yet.";
        case Kind::incomplete: break;
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
