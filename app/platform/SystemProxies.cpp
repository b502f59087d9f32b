#include "app/platform/SystemProxies.h"

#include <algorithm>
#include <string_view>

namespace tarnik {
namespace {

std::optional<ProxyRoute> proxyRoute(std::string_view scheme, const SystemProxy& proxy, int usualPort) {
    std::string address(scheme);
    const bool needsBrackets = proxy.host.contains(':') && !proxy.host.starts_with('[');
    address += needsBrackets ? "[" + proxy.host + "]" : proxy.host;
    const int port = proxy.port.value_or(0);
    address += ":" + std::to_string(port != 0 ? port : usualPort);
    return ProxyRoute::parse(address);
}

std::optional<ProxyRoute> routeOf(const SystemProxy& proxy) {
    constexpr int usualHttpPort = 80;
    constexpr int usualSocksPort = 1080;
    switch (proxy.kind) {
        case SystemProxy::Kind::direct: return ProxyRoute();
        case SystemProxy::Kind::http: return proxyRoute("http://", proxy, usualHttpPort);
        case SystemProxy::Kind::socks: return proxyRoute("socks5://", proxy, usualSocksPort);
        case SystemProxy::Kind::script:
        case SystemProxy::Kind::other: break;
    }
    return std::nullopt;
}

void append(ProxyRoutes& routes, const SystemProxyList& entries) {
    for (const auto& entry : entries) {
        auto route = routeOf(entry);
        if (route && std::ranges::find(routes, *route) == routes.end()) routes.push_back(std::move(*route));
    }
}

}  // namespace

ProxyRoutes routesOf(const SystemProxyList& entries, const RunProxyScript& runScript) {
    ProxyRoutes routes;
    for (const auto& entry : entries) {
        if (entry.kind != SystemProxy::Kind::script) {
            append(routes, {entry});
        } else if (const auto found = runScript(entry.script)) {
            append(routes, *found);
        }
    }
    return routes;
}

}  // namespace tarnik
