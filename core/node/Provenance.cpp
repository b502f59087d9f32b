#include "core/node/Provenance.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "core/foundation/Json.h"
#include "core/foundation/PartFile.h"
#include "core/node/InstallTexts.h"

namespace tarnik {

namespace {

constexpr std::int64_t formatVersion = 1;

std::optional<std::string> textIn(const Json& object, std::string_view key) {
    const Json* member = object.member(key);
    return member != nullptr ? member->asString() : std::nullopt;
}

std::string jsonOf(const Provenance::Tree& tree) {
    std::string files;
    for (const auto& [path, entry] : tree.listing.entries) {
        files += files.empty() ? "\n" : ",\n";
        files += quotedJson(path) + ":" + quotedJson(entry);
    }
    return R"({"version":)" + quotedJson(tree.version) + R"(,"archive":)" + quotedJson(tree.archive) +
           R"(,"installed":)" + std::to_string(tree.installed.time_since_epoch().count()) + R"(,"digest":)" +
           quotedJson(tree.digest) + R"(,"files":{)" + files + "}}";
}

std::optional<Provenance::Tree> treeIn(const Json& record, std::string_view key) {
    const Json* object = record.member(key);
    const Json* files = object != nullptr ? object->member("files") : nullptr;
    if (files == nullptr || !files->isObject()) return std::nullopt;
    auto version = textIn(*object, "version");
    auto archive = textIn(*object, "archive");
    auto digest = textIn(*object, "digest");
    const Json* installed = object->member("installed");
    const auto seconds = installed != nullptr ? installed->asInteger() : std::nullopt;
    if (!version || !archive || !digest || !seconds) return std::nullopt;
    Provenance::Tree tree{.version = *std::move(version),
                          .archive = *std::move(archive),
                          .installed = std::chrono::sys_seconds(std::chrono::seconds(*seconds)),
                          .digest = *std::move(digest)};
    for (const auto& [path, entry] : files->members()) {
        auto text = entry.asString();
        if (!text) return std::nullopt;
        tree.listing.entries.emplace(path, *std::move(text));
    }
    return tree;
}

// Returns how the record contradicts itself or its signed release, or an empty text.
std::string contradictionIn(const Provenance& record, const NodeReleaseManifest& manifest,
                            const ReleaseCrypto& crypto) {
    if (!record.package.listing.entries.empty()) {
        const auto artifact = manifest.artifacts.find(record.platform);
        if (artifact == manifest.artifacts.end() || artifact->second.sha256 != record.package.archive)
            return "the recorded package isn't the one of the signed release";
        if (manifest.version != record.package.version) return "the recorded version isn't the signed one";
    }
    for (const auto* tree : {&record.runtime, &record.package})
        if (crypto.sha256Hex(tree->listing.text()) != tree->digest)
            return "the recorded list of files was changed";
    return "";
}

ProvenanceCheck::Tree treeCheck(const char* name, const std::string& folder, const Provenance::Tree& recorded,
                                const ReleaseCrypto& crypto) {
    using enum ProvenanceCheck::TreeState;
    ProvenanceCheck::Tree tree{.name = name, .folder = folder, .version = recorded.version};
    if (recorded.listing.entries.empty()) return tree;
    const auto found = TreeListing::of(folder, crypto.sha256HexOfFile);
    tree.state = gone;
    if (!found) return tree;
    tree.differences = TreeDifferences::between(recorded.listing, *found);
    tree.state = recorded.archive.empty() ? unknownOrigin : unchanged;
    if (tree.differences.count() > 0) tree.state = changed;
    return tree;
}

}  // namespace

std::string Provenance::pathIn(const NodeHome& home) {
    return home.path + "/" + std::string(fileName);
}

std::optional<Provenance> Provenance::read(const NodeHome& home) {
    const std::string path = pathIn(home);
    if (!isRegularFile(path)) return std::nullopt;
    const auto text = readFile(path, maxBytes);
    return text ? parse(*text) : std::nullopt;
}

std::optional<Provenance> Provenance::parse(std::string_view json) {
    const auto object = Json::parse(json, maxBytes);
    const Json* version = object ? object->member("v") : nullptr;
    if (version == nullptr || version->asInteger() != formatVersion) return std::nullopt;
    auto release = textIn(*object, "release");
    auto keyId = textIn(*object, "keyId");
    auto platform = textIn(*object, "platform");
    auto runtime = treeIn(*object, "runtime");
    auto package = treeIn(*object, "package");
    if (!release || !keyId || !platform || !runtime || !package) return std::nullopt;
    return Provenance{.release = *std::move(release),
                      .keyId = *std::move(keyId),
                      .platform = *std::move(platform),
                      .runtime = *std::move(runtime),
                      .package = *std::move(package)};
}

bool Provenance::write(const NodeHome& home) const {
    const std::string path = pathIn(home);
    PartFile file(path);
    return file.isOpen() && file.append(json()) && file.moveTo(path);
}

std::string Provenance::json() const {
    return R"({"v":)" + std::to_string(formatVersion) + R"(,"keyId":)" + quotedJson(keyId) +
           R"(,"platform":)" + quotedJson(platform) + R"(,"release":)" + quotedJson(release) + ",\n" +
           R"("runtime":)" + jsonOf(runtime) + ",\n" + R"("package":)" + jsonOf(package) + "}\n";
}

ProvenanceCheck ProvenanceCheck::of(const NodeHome& home, const std::optional<std::string>& publicKeyB64url,
                                    const ReleaseCrypto& crypto) {
    const std::string path = Provenance::pathIn(home);
    if (!exists(path) && !isLink(path)) return {};
    const auto record = Provenance::read(home);
    if (!record) return {.record = Record::unreadable};
    const auto manifest = NodeRelease::verifyChannelFile(record->release, publicKeyB64url, crypto);
    if (!manifest) return {.record = Record::unsigned_, .reason = NodeRelease::describe(manifest.error())};
    if (auto why = contradictionIn(*record, *manifest, crypto); !why.empty())
        return {.record = Record::mismatch, .reason = std::move(why)};
    return {.record = Record::good,
            .trees = {treeCheck(InstallTexts::runtimeName, home.runtimeDir(), record->runtime, crypto),
                      treeCheck(InstallTexts::packageName, home.appDir(), record->package, crypto)}};
}

bool ProvenanceCheck::isGood() const {
    const auto isUnchanged = [](const Tree& tree) {
        return tree.state == TreeState::unchanged || tree.state == TreeState::unknownOrigin;
    };
    return record == Record::good && std::ranges::all_of(trees, isUnchanged);
}

}  // namespace tarnik
