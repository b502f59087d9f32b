#include "core/node/NodeHome.h"

#include "core/foundation/Paths.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {

namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t markerMode = 0644;

bool isInside(std::string_view path, const std::string& folder) {
    return path.starts_with(folder.ends_with('/') ? folder : folder + "/");
}

bool overlap(const std::string& one, const std::string& other) {
    return one == other || isInside(one, other) || isInside(other, one);
}

}  // namespace

std::string NodeHome::defaultPath(std::string_view homeDirectory) {
    return standardize(std::string(homeDirectory) + "/.tarnik/node");
}

std::expected<NodeHome, NodeHome::ResolveError> NodeHome::resolve(const std::optional<std::string>& chosen,
                                                                  std::string_view homeDirectory) {
    using enum ResolveError::Reason;
    NodeHome standard{.path = defaultPath(homeDirectory), .isDefault = true};
    const std::string_view text = trimWhitespace(chosen ? std::string_view(*chosen) : "");
    if (text.empty()) return standard;
    if (!text.starts_with('/')) return std::unexpected(ResolveError{notAbsolute, std::string(text)});

    const std::string candidate = standardize(text);
    if (candidate == standard.path) return standard;
    const std::string home = standardize(homeDirectory);
    if (candidate == "/" || candidate == home || candidate == parentFolder(standard.path)) {
        return std::unexpected(ResolveError{reserved, candidate});
    }
    if (overlap(candidate, standard.path) ||
        overlap(resolvingLinks(candidate), resolvingLinks(standard.path))) {
        return std::unexpected(ResolveError{overlapsDefault, candidate});
    }
    return NodeHome{.path = candidate, .isDefault = false};
}

std::expected<void, NodeHome::ClaimFailure> NodeHome::claim() const {
    using enum ClaimError::Reason;
    const auto refuse = [this](ClaimError::Reason reason) {
        return std::unexpected(ClaimError{reason, path});
    };
    const bool isThere = exists(path);
    if (isLink(marker())) return refuse(holdsOtherFiles);
    const bool claimed = isClaimed();
    if (isLink(path) && !claimed) return refuse(isALink);
    if (isThere && !isFolder(path)) return refuse(notAFolder);
    if (claimed) return {};
    // A command-line install creates these files in the default folder.
    const bool mayAdopt = isDefault && (exists(wrapper()) || exists(joinRecord()));
    if (isThere && holdsEntries(path) && !mayAdopt) return refuse(holdsOtherFiles);

    if (auto made = createFolders(path, folderMode); !made) return std::unexpected(made.error());
    // The write need not be atomic, because the content of the marker is never read.
    if (auto marked = writeFile(marker(), markerText, markerMode); !marked)
        return std::unexpected(marked.error());
    return {};
}

bool NodeHome::isClaimed() const {
    return isRegularFile(marker());
}

bool NodeHome::isInstalled() const {
    return isExecutableFile(nodeBinary()) && exists(entry());
}

bool NodeHome::hasJoined() const {
    return exists(joinRecord());
}

std::string NodeHome::marker() const {
    return path + "/" + std::string(markerName);
}

std::string NodeHome::runtimeDir() const {
    return path + "/runtime/node";
}

std::string NodeHome::nodeBinary() const {
    return runtimeDir() + "/bin/node";
}

std::string NodeHome::appDir() const {
    return path + "/app";
}

std::string NodeHome::entry() const {
    return appDir() + "/lib/node_modules/openclaw/openclaw.mjs";
}

std::string NodeHome::wrapper() const {
    return appDir() + "/bin/tarnik-node";
}

std::string NodeHome::joinRecord() const {
    return path + "/trust/web-key.json";
}

}  // namespace tarnik
