#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/foundation/Url.h"
#include "core/node/NodeRuntime.h"

namespace tarnik {

// What the build wrote into the Info.plist of the application's bundle.
//
// A value; read once at start.
struct BuildSettings {
    Url webOrigin;  // the service's website
    std::optional<Url> nodeReleaseBase;
    std::optional<std::string> nodeReleasePublicKey;
    std::optional<std::string> nodeMinVersion;
    std::optional<NodeRuntime> developmentRuntime;  // development builds only

    // Reads Contents/Info.plist of the bundle folder. What is absent, not text or empty counts as not set, as
    // does an address without scheme or host; a whole file that can't be read sets nothing. Then there is
    // still the web origin that was given to the build.
    static BuildSettings fromBundle(const std::string& bundlePath);

    // The same from the bytes of an Info.plist.
    static BuildSettings fromPropertyList(std::string_view bytes);
};

}  // namespace tarnik
