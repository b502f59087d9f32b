#include "app/model/BuildSettings.h"

#include "app/model/DevelopmentRuntime.h"
#include "app/model/InfoText.h"
#include "core/foundation/Files.h"
#include "core/foundation/PropertyList.h"

namespace tarnik {

namespace {

std::optional<Url> address(const std::optional<std::string>& text) {
    auto url = Url::parse(text.value_or(""));
    return url && url->host() ? url : std::nullopt;
}

// Checked by the build, which supplies it.
Url defaultWebOrigin() {
    return Url::parse(TARNIK_DEFAULT_WEB_ORIGIN).value_or(Url());
}

}  // namespace

BuildSettings BuildSettings::fromBundle(const std::string& bundlePath) {
    const auto bytes = readFile(bundlePath + "/Contents/Info.plist", PropertyList::maxBytes);
    return fromPropertyList(bytes.value_or(""));
}

BuildSettings BuildSettings::fromPropertyList(std::string_view bytes) {
    const PropertyList info = PropertyList::parse(bytes).value_or(PropertyList(PropertyList::Other{}));
    return {
        .webOrigin = address(infoText(info, "TKWebOrigin")).value_or(defaultWebOrigin()),
        .nodeReleaseBase = address(infoText(info, "TKNodeReleaseBase")),
        .nodeReleasePublicKey = infoText(info, "TKNodeReleasePublicKey"),
        .nodeMinVersion = infoText(info, "TKNodeMinVersion"),
        .developmentRuntime = readDevelopmentRuntime(info),
    };
}

}  // namespace tarnik
