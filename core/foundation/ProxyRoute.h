#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnik {

// One way to a server: through a proxy, or directly. ProxySources (app/platform/) chooses the routes.
struct ProxyRoute {
    std::string address = {};  // as libcurl accepts it; empty for a direct connection

    // Parses "direct", "direct://", or the address of a proxy: a host and a port after one of the schemes
    // http, https, socks, socks4 and socks5. An address without a scheme is that of an http proxy. A SOCKS
    // proxy resolves the names of servers. Returns std::nullopt for any other text.
    static std::optional<ProxyRoute> parse(std::string_view text);

    bool isDirect() const { return address.empty(); }

    // Returns the host and the port for messages, without a user's name and password.
    std::string name() const;

    bool operator==(const ProxyRoute&) const = default;
};

// The ways to one server, in the order in which a transfer tries them.
using ProxyRoutes = std::vector<ProxyRoute>;

// Returns the routes to the server of `url`. May block for some seconds. Called on the transfer's thread.
using ProxyLookup = std::function<ProxyRoutes(const std::string& url)>;

// Returns true if the list, in the form of the variable no_proxy, contains the host. Entries are separated by
// commas or blanks. An entry is a name, which includes the names below it, an address, or a range of
// addresses such as 10.0.0.0/8. The list "*" contains every host. `host` has brackets if it is an IPv6
// address, as in a URL.
bool bypassesProxy(std::string_view host, std::string_view list);

}  // namespace tarnik
