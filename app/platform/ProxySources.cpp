#include "app/platform/ProxySources.h"

#include <algorithm>
#include <initializer_list>

#include "core/foundation/Url.h"

namespace tarnik {
namespace {

std::string firstOf(const Environment& environment, std::initializer_list<const char*> names) {
    for (const char* name : names)
        if (auto value = environmentValue(environment, name); !value.empty()) return value;
    return {};
}

// Reads the same variables as libcurl. HTTP_PROXY in capital letters isn't one of them, because a web server
// sets that variable from a request's header.
std::string environmentProxy(const Environment& environment, std::string_view scheme) {
    if (scheme == "https")
        return firstOf(environment, {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"});
    return firstOf(environment, {"http_proxy", "all_proxy", "ALL_PROXY"});
}

// Returns the URL without its path and query, which may have a pairing code. The lookup may run a script that
// somebody else wrote.
std::string originOf(const Url& url) {
    std::string origin = url.scheme() + "://" + *url.host();
    if (url.port()) origin += ":" + *url.port();
    return origin + "/";
}

}  // namespace

ProxyRoutes ProxySources::routesFor(const std::string& url) const {
    if (forced) return {*forced};
    const auto parsed = Url::parse(url);
    if (!parsed || !parsed->host()) return {ProxyRoute()};
    if (bypassesProxy(*parsed->host(), firstOf(environment, {"no_proxy", "NO_PROXY"}))) return {ProxyRoute()};
    // libcurl parses the variable's text, and accepts more forms than ProxyRoute::parse().
    if (auto address = environmentProxy(environment, parsed->scheme()); !address.empty())
        return {ProxyRoute{std::move(address)}};
    auto routes = desktop ? desktop(originOf(*parsed)) : ProxyRoutes();
    if (routes.size() > maxRoutes) routes.resize(maxRoutes);
    // A system without a proxy usually answers with a direct route.
    if (std::ranges::all_of(routes, &ProxyRoute::isDirect)) return {proposed.value_or(ProxyRoute())};
    return routes;
}

}  // namespace tarnik
