#pragma once

#include "app/bundle/BundleInfo.h"
#include "app/platform/ProxySources.h"
#include "app/policy/Policy.h"

namespace tarnik {

// Returns the settings of the build with the values of the policy in their place. A minimum version only
// replaces an older one, so a policy never weakens the build.
BuildSettings managedSettings(BuildSettings build, const Policy& policy);

// Returns the sources with the proxy of the policy.
ProxySources managedProxies(ProxySources sources, const Policy& policy);

}  // namespace tarnik
