#include "tools/release/ReleaseCheck.h"

#include <algorithm>
#include <utility>

#include <sys/stat.h>

#include "core/foundation/Files.h"
#include "core/foundation/Json.h"
#include "core/foundation/TextCleanup.h"
#include "core/node/InstalledVersion.h"
#include "core/node/ReleaseVersion.h"

namespace tarnik {
namespace {

using Failed = std::unexpected<std::string>;

constexpr mode_t privateFolder = 0700;
constexpr mode_t privateFile = 0600;
constexpr std::size_t longestLine = 300;

std::string inMegabytes(std::int64_t bytes) {
    constexpr std::int64_t tenth = 100'000;
    const auto tenths = (bytes + tenth - 1) / tenth;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB";
}

// Claims a fresh node home, and makes it look as if this version of the helper were installed.
std::expected<void, std::string> prepare(const NodeHome& home, const std::optional<std::string>& installed) {
    if (auto claimed = home.claim(); !claimed) return Failed(describe(claimed.error()));
    if (!installed) return {};
    const auto folder = home.appDir() + "/lib/node_modules/openclaw";
    if (auto made = createFolders(folder, privateFolder); !made) return Failed(describe(made.error()));
    const auto text = R"({"version":)" + quotedJson(*installed) + "}";
    if (auto written = writeFile(folder + "/tarnik-node.json", text, privateFile); !written)
        return Failed(describe(written.error()));
    return {};
}

// Returns false if a link in `folder` can have a target outside the package. Paths are relative to the
// package. Only the first parts of a target may be "..": a name may be another link, whose parent is
// elsewhere.
bool staysInside(const std::string& entry, const std::string& target) {
    if (target.empty() || target.starts_with('/')) return false;
    auto depth = std::ranges::count(entry, '/');
    bool hasName = false;
    for (std::size_t from = 0; from <= target.size();) {
        const auto end = std::min(target.find('/', from), target.size());
        const auto part = target.substr(from, end - from);
        if (part == "..")
            --depth;
        else if (!part.empty() && part != ".")
            hasName = true;
        if (depth < 0 || (hasName && part == "..")) return false;
        from = end + 1;
    }
    return true;
}

}  // namespace

std::optional<std::string> foreignFile(const TreeListing& listing) {
    constexpr unsigned long ownersRights = 06000;
    for (const auto& [path, entry] : listing.entries) {
        const bool isLink = entry.starts_with("l ");
        const bool isFile = entry.starts_with("f ");
        if (isLink && !staysInside(path, entry.substr(2))) return path;
        if (isFile && (std::stoul(entry.substr(2), nullptr, 8) & ownersRights) != 0) return path;
        if (!isLink && !isFile && !entry.starts_with("d ")) return path;
    }
    return std::nullopt;
}

ReleaseCheck::ReleaseCheck(Request request, NodeInstallerDeps deps)
    : request_(std::move(request)), deps_(std::move(deps)) {}

std::expected<void, std::string> ReleaseCheck::run(const Report& report) const {
    const auto file = deps_.fetch(request_.base.appending("stable.json").text());
    if (!file) return Failed(describe(file.error()));
    const auto manifest = NodeRelease::verifyChannelFile(*file, request_.publicKey, deps_.crypto);
    if (!manifest)
        return Failed("Programs refuse the release: " + NodeRelease::describe(manifest.error()) + ".");
    report("The release file is signed and has version " + manifest->version + ".");
    if (manifest->artifacts.empty()) return Failed("The release has no archive for any platform.");
    for (const auto& [platform, artifact] : manifest->artifacts)
        if (auto good = check(*manifest, platform, report); !good) return good;
    if (!request_.installedVersion) {
        report("A computer without a helper installs it.");
    } else if (ReleaseVersion::compare(manifest->version, *request_.installedVersion) == 0) {
        report("A computer with helper " + *request_.installedVersion + " already has it.");
    } else {
        report("A computer with helper " + *request_.installedVersion +
               " installs it when its helper is missing or damaged.");
    }
    return {};
}

std::expected<void, std::string> ReleaseCheck::check(const NodeReleaseManifest& manifest,
                                                     const std::string& platform,
                                                     const Report& report) const {
    const auto name = sanitizedLine(platform, longestLine);
    if (std::ranges::find(NodeRelease::platforms, platform) == NodeRelease::platforms.end())
        return Failed(name + " is not a platform of the program.");
    const auto home = NodeHome::resolve(request_.folder + "/" + platform, request_.folder);
    if (!home) return Failed(describe(home.error()));
    if (auto ready = prepare(*home, request_.installedVersion); !ready) return ready;
    const auto size = install(*home, platform);
    if (!size) return Failed(name + ": " + sanitizedLine(size.error(), longestLine));

    const auto& artifact = manifest.artifacts.at(platform);
    if (*size != artifact.size)
        return Failed(name + ": the archive has " + std::to_string(*size) + " bytes, but the release says " +
                      std::to_string(artifact.size) + ".");
    const auto version = installedVersion(*home);
    if (version != manifest.version)
        return Failed(name + ": the archive has the helper " +
                      sanitizedLine(version.value_or("?"), longestLine) + ", but the release says " +
                      manifest.version + ".");
    const auto listing = TreeListing::of(home->appDir(), [](const auto&) { return std::string("-"); });
    if (!listing) return Failed(name + ": the unpacked files can't be read.");
    if (const auto foreign = foreignFile(*listing))
        return Failed(name + ": the archive has a link to another place, or a special file: " +
                      sanitizedLine(*foreign, longestLine));
    std::string sentence = name;
    sentence.append(": ").append(artifact.path).append(", ").append(inMegabytes(artifact.size));
    report(sentence.append(", has ")
               .append(std::to_string(listing->entries.size()))
               .append(" files and folders."));
    removeTree(home->path);
    return {};
}

// Without a runtime to check, the installer finds the right one installed.
std::expected<std::int64_t, std::string> ReleaseCheck::install(const NodeHome& home,
                                                               const std::string& platform) const {
    auto deps = deps_;
    auto runtime = request_.runtime;
    if (!runtime || runtime->platform != platform) {
        runtime = NodeRuntime{.platform = platform, .version = "v0", .base = {}, .file = {}, .sha256 = {}};
        deps.runtimeVersion = [wanted = NodeRuntimePin::runtimeFor(platform, runtime)](const std::string&) {
            return wanted ? std::optional(wanted->version) : std::nullopt;
        };
    }
    std::int64_t size = 0;
    deps.download = [&](const std::string& url, const std::string& to, const Http::Progress& progress) {
        auto done = deps_.download(url, to, progress);
        struct stat found{};
        size = done && ::stat(to.c_str(), &found) == 0 ? found.st_size : 0;
        return done;
    };
    const NodeInstaller installer(home,
                                  {.releaseBase = request_.base,
                                   .releasePublicKey = request_.publicKey,
                                   .platform = platform,
                                   .minimumVersion = request_.minimumVersion,
                                   .runtime = runtime},
                                  std::move(deps));
    const auto installed = installer.install({.text = [](const std::string&) {}});
    if (!installed) return Failed(describe(installed.error()));
    return size;
}

}  // namespace tarnik
