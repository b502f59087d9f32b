#include "core/node/NodeHome.h"

#include <cstdio>

#include <unistd.h>

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
    // What a command-line install left in the default folder is the node's own.
    const bool mayAdopt = isDefault && (exists(wrapper()) || exists(joinRecord()));
    // A claim that was killed leaves its unfinished marker.
    const auto ours = isRegularFile(unfinishedMarker()) ? unfinishedMarkerName : std::string_view();
    if (isThere && holdsEntries(path, ours) && !mayAdopt) return refuse(holdsOtherFiles);

    if (auto made = createFolders(path, folderMode); !made) return std::unexpected(made.error());
    if (auto marked = writeMarker(); !marked) return std::unexpected(marked.error());
    return {};
}

// The marker appears whole or not at all: a folder with an empty one would count as claimed for ever.
std::expected<void, SystemError> NodeHome::writeMarker() const {
    const std::string unfinished = unfinishedMarker();
    auto done = writeFile(unfinished, markerText, markerMode);
    if (done && ::rename(unfinished.c_str(), marker().c_str()) != 0)
        done = std::unexpected(SystemError::last("rename", unfinished));
    if (!done) ::unlink(unfinished.c_str());
    return done;
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

std::string NodeHome::unfinishedMarker() const {
    return path + "/" + std::string(unfinishedMarkerName);
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

}  // namespace tarnik
