#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/foundation/PropertyList.h"
#include "core/foundation/Url.h"
#include "core/node/NodeRuntime.h"

namespace tarnik {

// The Info.plist of an application bundle. Empty if the file is missing, too large or malformed.
class BundleInfo {
public:
    explicit BundleInfo(const std::string& bundlePath);  // reads Contents/Info.plist
    static BundleInfo parse(std::string_view bytes);

    // Returns std::nullopt if the value is absent, not text, or empty.
    std::optional<std::string> text(std::string_view key) const;

    // Returns the version that users see. If it is absent, returns the build version.
    std::optional<std::string> version() const;

private:
    explicit BundleInfo(std::optional<PropertyList> list);

    std::optional<PropertyList> list_;
};

// The values that the build writes into Info.plist for this program. They are read once, at the start.
struct BuildSettings {
    Url webOrigin;  // the service's website; CMake's default if Info.plist has no valid address
    std::optional<Url> nodeReleaseBase;
    std::optional<std::string> nodeReleasePublicKey;
    std::optional<std::string> nodeMinVersion;
    std::optional<NodeRuntime> runtime;  // for a platform without a row in NodeRuntimePin::archives()
    bool policyMaySetReleases = false;   // the organisation may set the two release values

    // An invalid address or an address without a host counts as absent.
    static BuildSettings of(const BundleInfo& info);
    static BuildSettings fromBundle(const std::string& bundlePath) { return of(BundleInfo(bundlePath)); }

    // Returns the settings of a program that runs outside a bundle.
    static BuildSettings defaults() { return of(BundleInfo::parse({})); }
};

// The values in Info.plist that turn on the update framework. The framework reads the same values itself.
struct UpdateSettings {
    std::optional<std::string> feedURL;    // where new versions are announced
    std::optional<std::string> publicKey;  // verifies the signatures of new versions

    bool isComplete() const { return feedURL && publicKey; }

    static UpdateSettings fromBundle(const std::string& bundlePath);

    bool operator==(const UpdateSettings&) const = default;
};

// Returns the version of the bundle at this path, or std::nullopt if the bundle or its version is absent.
std::optional<std::string> bundleVersion(const std::string& bundlePath);

// Returns X for the executable X/Contents/MacOS/NAME, or std::nullopt for any other path.
std::optional<std::string> bundleOf(std::string_view executable);

}  // namespace tarnik
