#include "app/policy/ManagedSettings.h"

#include "core/node/ReleaseVersion.h"

namespace tarnik {

// A malformed minimum of the build refuses every release, and stays.
BuildSettings managedSettings(BuildSettings build, const Policy& policy) {
    if (policy.releaseBase) build.nodeReleaseBase = policy.releaseBase->value;
    if (policy.releaseKey) build.nodeReleasePublicKey = policy.releaseKey->value;
    if (!policy.minimumHelper) return build;
    const auto& minimum = policy.minimumHelper->value;
    if (!build.nodeMinVersion || ReleaseVersion::compare(minimum, *build.nodeMinVersion) == 1)
        build.nodeMinVersion = minimum;
    return build;
}

ProxySources managedProxies(ProxySources sources, const Policy& policy) {
    if (!policy.proxy) return sources;
    (policy.proxy->isForced() ? sources.forced : sources.proposed) = policy.proxy->value;
    return sources;
}

}  // namespace tarnik
