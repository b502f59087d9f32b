#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/foundation/ProxyRoute.h"

namespace tarnik {

// One entry of the system's list of proxies for an address.
struct SystemProxy {
    enum class Kind {
        direct,
        http,  // for http and https alike
        socks,
        script,  // a configuration script (PAC) returns the entries
        other,   // a kind that transfers don't use, such as FTP
    };

    Kind kind = Kind::direct;
    std::string host = {};
    std::optional<int> port = {};  // std::nullopt for the usual port
    std::string script = {};       // the address of the script
};
using SystemProxyList = std::vector<SystemProxy>;

// Runs a configuration script and returns its entries. Returns std::nullopt if the script can't be run within
// its time limit.
using RunProxyScript = std::function<std::optional<SystemProxyList>(const std::string& script)>;

// Returns the routes of the entries in their order, without duplicates. An entry that a script returns is
// used only if it isn't a script itself. Entries with an invalid host or port are omitted.
ProxyRoutes routesOf(const SystemProxyList& entries, const RunProxyScript& runScript);

// Returns the lookup in the system's proxy settings that needs no toolkit. Empty if the system has none; on
// Linux the settings belong to the desktop, whose portal only DesktopPlatform reaches.
ProxyLookup systemProxies();

}  // namespace tarnik
