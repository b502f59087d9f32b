#include "app/bundle/BundleInfo.h"

#include <utility>

#include "core/foundation/Files.h"

namespace tarnik {

namespace {

std::optional<Url> address(const std::optional<std::string>& text) {
    auto url = Url::parse(text.value_or(""));
    return url && url->host() ? url : std::nullopt;
}

// Returns std::nullopt unless all five values are present.
std::optional<NodeRuntime> runtimeIn(const BundleInfo& info) {
    auto platform = info.text("TKNodeRuntimePlatform");
    auto version = info.text("TKNodeRuntimeVersion");
    auto base = info.text("TKNodeRuntimeBase");
    auto file = info.text("TKNodeRuntimeFile");
    auto sha256 = info.text("TKNodeRuntimeSHA256");
    if (!platform || !version || !base || !file || !sha256) return std::nullopt;
    return NodeRuntime{.platform = *std::move(platform),
                       .version = *std::move(version),
                       .base = *std::move(base),
                       .file = *std::move(file),
                       .sha256 = *std::move(sha256)};
}

// CMake rejects an invalid address.
Url defaultWebOrigin() {
    return Url::parse(TARNIK_DEFAULT_WEB_ORIGIN).value_or(Url());
}

}  // namespace

BundleInfo::BundleInfo(std::optional<PropertyList> list) : list_(std::move(list)) {}

BundleInfo::BundleInfo(const std::string& bundlePath)
    : BundleInfo(parse(readFile(bundlePath + "/Contents/Info.plist", PropertyList::maxBytes).value_or(""))) {}

BundleInfo BundleInfo::parse(std::string_view bytes) {
    return BundleInfo(PropertyList::parse(bytes));
}

std::optional<std::string> BundleInfo::text(std::string_view key) const {
    const PropertyList* value = list_ ? list_->entry(key) : nullptr;
    auto text = value != nullptr ? value->asString() : std::nullopt;
    return text && !text->empty() ? text : std::nullopt;
}

std::optional<std::string> BundleInfo::version() const {
    if (auto shown = text("CFBundleShortVersionString")) return shown;
    return text("CFBundleVersion");
}

BuildSettings BuildSettings::of(const BundleInfo& info) {
    return {
        .webOrigin = address(info.text("TKWebOrigin")).value_or(defaultWebOrigin()),
        .nodeReleaseBase = address(info.text("TKNodeReleaseBase")),
        .nodeReleasePublicKey = info.text("TKNodeReleasePublicKey"),
        .nodeMinVersion = info.text("TKNodeMinVersion"),
        .runtime = runtimeIn(info),
        .policyMaySetReleases = info.text("TKPolicyMaySetReleases") == "yes",
    };
}

UpdateSettings UpdateSettings::fromBundle(const std::string& bundlePath) {
    const BundleInfo info(bundlePath);
    return {.feedURL = info.text("SUFeedURL"), .publicKey = info.text("SUPublicEDKey")};
}

std::optional<std::string> bundleVersion(const std::string& bundlePath) {
    return BundleInfo(bundlePath).version();
}

std::optional<std::string> bundleOf(std::string_view executable) {
    constexpr std::string_view inside = "/Contents/MacOS";
    const auto slash = executable.rfind('/');
    if (slash == std::string_view::npos) return std::nullopt;
    const auto folder = executable.substr(0, slash);
    if (!folder.ends_with(inside) || folder.size() == inside.size()) return std::nullopt;
    return std::string(folder.substr(0, folder.size() - inside.size()));
}

}  // namespace tarnik
