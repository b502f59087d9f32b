#include "core/node/NodeInstaller.h"

#include <cstdio>
#include <utility>

#include "core/foundation/Files.h"
#include "core/foundation/Uuid.h"
#include "core/node/InstallRecord.h"
#include "core/node/InstallTexts.h"
#include "core/node/InstalledVersion.h"
#include "core/node/ReleaseVersion.h"

namespace tarnik {
namespace {

using Kind = InstallFailure::Kind;

constexpr mode_t privateFolder = 0700;

std::unexpected<InstallError> fail(Kind kind, std::string what = {}) {
    return std::unexpected<InstallError>(InstallFailure{kind, std::move(what)});
}

bool isAtLeast(const std::string& version, const std::string& minimum) {
    const auto order = ReleaseVersion::compare(version, minimum);
    return order && *order >= 0;
}

std::expected<void, InstallError> move(const std::string& from, const std::string& to) {
    if (::rename(from.c_str(), to.c_str()) == 0) return {};
    return std::unexpected(SystemError::last("rename", from));
}

std::expected<void, InstallError> makeFolder(const std::string& path) {
    const auto made = createFolders(path, privateFolder);
    if (!made) return std::unexpected(made.error());
    return {};
}

}  // namespace

// The archives of one install.
struct NodeInstaller::Sources {
    NodeRuntime runtime;
    ReleaseArtifact package;
    InstallRecord::Release release;
};

// The staging folder of one install. The destructor removes the folder. It is inside the node home, so that a
// rename can move its contents into place. A killed install leaves its folder behind. No later install
// removes the folder, because another instance may be using it.
class NodeInstaller::Stage {
public:
    explicit Stage(const NodeHome& home)
        : path_(home.path + "/tmp/app-install." + randomUuid().substr(0, 8)) {}
    ~Stage() { removeTree(path_); }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    const std::string& path() const { return path_; }

private:
    const std::string path_;
};

NodeInstaller::NodeInstaller(NodeHome home, Settings settings, NodeInstallerDeps deps)
    : home_(std::move(home)), settings_(std::move(settings)), deps_(std::move(deps)) {}

std::expected<void, InstallError> NodeInstaller::install(const Progress& progress) const {
    const auto sources = chooseSources();
    if (!sources) return std::unexpected(sources.error());
    if (auto claimed = claim(); !claimed) return claimed;
    for (const auto& folder : {home_.path + "/runtime", home_.path + "/tmp"}) {
        if (auto made = makeFolder(folder); !made) return made;
    }
    const Stage stage(home_);
    if (auto made = makeFolder(stage.path()); !made) return made;
    InstallRecord record(home_, sources->release, deps_.crypto);
    if (deps_.runtimeVersion(home_.nodeBinary()) == sources->runtime.version) {
        record.runtimeKept(sources->runtime);
    } else if (auto installed = installRuntime(*sources, stage, progress, record); !installed) {
        return installed;
    }
    return installPackage(*sources, stage, progress, record);
}

std::optional<std::string> NodeInstaller::installedVersion() const {
    return tarnik::installedVersion(home_);
}

// Makes all checks that are possible without a change of the disk.
std::expected<NodeInstaller::Sources, InstallError> NodeInstaller::chooseSources() const {
    if (!settings_.releaseBase || !settings_.releasePublicKey) return fail(Kind::notPublished);
    const auto body = deps_.fetch(settings_.releaseBase->appending("stable.json").text());
    if (!body) return std::unexpected(body.error());
    const auto manifest = NodeRelease::verifyChannelFile(*body, settings_.releasePublicKey, deps_.crypto);
    if (!manifest) return std::unexpected(manifest.error());
    if (auto allowed = checkVersion(manifest->version); !allowed) return std::unexpected(allowed.error());

    const auto artifact = manifest->artifacts.find(settings_.platform);
    if (artifact == manifest->artifacts.end()) return fail(Kind::noArtifact, settings_.platform);
    auto chosen = NodeRuntimePin::runtimeFor(settings_.platform, settings_.runtime);
    if (!chosen) return fail(Kind::noArtifact, settings_.platform);
    const auto key = NodeRelease::base64url(*settings_.releasePublicKey).value_or("");
    return Sources{.runtime = std::move(*chosen),
                   .package = artifact->second,
                   .release = {.file = *body,
                               .version = manifest->version,
                               .keyId = NodeRelease::keyId(key, deps_.crypto),
                               .platform = settings_.platform}};
}

std::expected<void, InstallError> NodeInstaller::checkVersion(const std::string& version) const {
    if (settings_.minimumVersion && !isAtLeast(version, *settings_.minimumVersion)) {
        return fail(Kind::tooOld, version);
    }
    // An installed version that can't be compared might be newer, so it blocks every install.
    const auto installed = installedVersion();
    if (installed && !isAtLeast(version, *installed)) return fail(Kind::tooOld, version);
    return {};
}

std::expected<void, InstallError> NodeInstaller::claim() const {
    const auto claimed = home_.claim();
    if (claimed) return {};
    return std::visit(
        [](const auto& error) -> std::expected<void, InstallError> { return std::unexpected(error); },
        claimed.error());
}

std::expected<void, InstallError> NodeInstaller::installRuntime(const Sources& sources, const Stage& stage,
                                                                const Progress& progress,
                                                                InstallRecord& record) const {
    progress.text(InstallTexts::downloadingRuntime(sources.runtime.version));
    const auto base = Url::parse(sources.runtime.base);
    if (!base) return fail(Kind::download, InstallTexts::runtimeName);
    const std::string archive = stage.path() + "/node.tar.gz";
    const std::string unpacked = stage.path() + "/node";
    const auto url = base->appending(sources.runtime.file).text();
    if (auto done = deps_.download(url, archive, progress.bytes); !done) return done;
    if (deps_.crypto.sha256HexOfFile(archive) != sources.runtime.sha256)
        return fail(Kind::checksum, InstallTexts::runtimeName);
    if (auto made = makeFolder(unpacked); !made) return made;
    if (auto done = deps_.extract(archive, unpacked); !done) return done;
    if (!isExecutableFile(unpacked + "/bin/node")) return fail(Kind::incomplete);
    auto listing = record.list(unpacked);
    if (auto replaced = replace(home_.runtimeDir(), unpacked, stage); !replaced) return replaced;
    record.runtimeReplaced(sources.runtime, std::move(listing));
    return {};
}

std::expected<void, InstallError> NodeInstaller::installPackage(const Sources& sources, const Stage& stage,
                                                                const Progress& progress,
                                                                InstallRecord& record) const {
    progress.text(InstallTexts::downloadingPackage());
    const std::string archive = stage.path() + "/tarnik-node.tar.gz";
    const std::string unpacked = stage.path() + "/app";
    const auto url = settings_.releaseBase->appending(sources.package.path).text();
    if (auto done = deps_.download(url, archive, progress.bytes); !done) return done;
    if (deps_.crypto.sha256HexOfFile(archive) != sources.package.sha256) {
        return fail(Kind::checksum, InstallTexts::packageName);
    }
    if (auto made = makeFolder(unpacked); !made) return made;
    if (auto done = deps_.extract(archive, unpacked); !done) return done;
    const bool complete = isExecutableFile(unpacked + "/bin/tarnik-node") &&
                          exists(unpacked + "/lib/node_modules/openclaw/openclaw.mjs");
    if (!complete) return fail(Kind::incomplete);
    auto listing = record.list(unpacked);
    if (auto replaced = replace(home_.appDir(), unpacked, stage); !replaced) return replaced;
    record.packageReplaced(sources.package, std::move(listing));
    return {};
}

// Renames the old folder instead of removing it in place, because a partly removed package could look like an
// installed one.
std::expected<void, InstallError> NodeInstaller::replace(const std::string& target, const std::string& staged,
                                                         const Stage& stage) const {
    if (!home_.isClaimed()) return fail(Kind::notOurFolder, home_.path);
    if (exists(target) || isLink(target)) {
        if (auto done = move(target, stage.path() + "/old-" + randomUuid()); !done) return done;
    }
    return move(staged, target);
}

}  // namespace tarnik
