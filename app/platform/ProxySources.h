#pragma once

#include <optional>
#include <string>

#include "core/foundation/ProxyRoute.h"
#include "core/process/Environment.h"

namespace tarnik {

// The places that name the proxies of this computer, from the strongest to the weakest. All transfers of the
// program use lookup() of the record in HostEnvironment, so this is the one place to set a proxy.
struct ProxySources {
    // The proxy that an administrator requires. If set, nothing else is read: neither the other sources nor
    // the exceptions of no_proxy apply. Set it before the application is created.
    std::optional<ProxyRoute> forced = {};

    // The variables http_proxy, https_proxy and all_proxy, and the exceptions in no_proxy.
    Environment environment = {};

    // The proxy that an administrator proposes. Used if no other source names one for an address. The answer
    // of `desktop` doesn't distinguish an exception from a system without a proxy; a direct route from there
    // names none.
    std::optional<ProxyRoute> proposed = {};

    // The settings of the system or of the desktop. Absent if they can't be read. The lookup gets the address
    // of the server without a path.
    ProxyLookup desktop = {};

    // A transfer tries at most this number of routes.
    static constexpr std::size_t maxRoutes = 4;

    // Returns the routes for an address. Returns a direct route if no source names a proxy.
    ProxyRoutes routesFor(const std::string& url) const;

    // Returns routesFor() of a copy of this record.
    ProxyLookup lookup() const {
        return [copy = *this](const std::string& url) { return copy.routesFor(url); };
    }
};

}  // namespace tarnik
