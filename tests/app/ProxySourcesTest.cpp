#include "app/platform/ProxySources.h"

#include <gtest/gtest.h>

#include "app/platform/SystemProxies.h"

namespace tarnik {
namespace {

using Kind = SystemProxy::Kind;

std::string textOf(const ProxyRoutes& routes) {
    std::string text;
    for (const auto& route : routes) text += (route.isDirect() ? "direct" : route.address) + ";";
    return text;
}

TEST(ProxySources, asksTheStrongestSourceThatNamesAProxy) {
    const auto desktop = [](const std::string& url) {
        EXPECT_FALSE(url.contains("code")) << url;
        if (url.contains("plain")) return ProxyRoutes{ProxyRoute()};
        return url.contains("inside") ? ProxyRoutes() : ProxyRoutes(9, ProxyRoute{"http://desk:1"});
    };
    const ProxySources without{.desktop = desktop};
    ProxySources proposed = without;
    proposed.proposed = ProxyRoute{"http://proposed:1"};
    const ProxySources with{.environment = {{"https_proxy", ""},
                                            {"ALL_PROXY", "all:1"},
                                            {"http_proxy", "http://env:1"},
                                            {"HTTP_PROXY", "http://header:1"},
                                            {"no_proxy", ".example"}},
                            .desktop = desktop};
    ProxySources forced = with;
    forced.forced = ProxyRoute{"http://forced:1"};
    const ProxySources header{.environment = {{"HTTP_PROXY", "http://header:1"}}};
    const std::tuple<const ProxySources&, const char*, std::string> cases[] = {
        {without, "https://inside", "direct;"},
        {without, "https://[::1]:8443/inside?code",
         "http://desk:1;http://desk:1;http://desk:1;http://desk:1;"},
        {without, "https://outside", "http://desk:1;http://desk:1;http://desk:1;http://desk:1;"},
        {without, "https://plain", "direct;"},
        {proposed, "https://plain", "http://proposed:1;"},
        {proposed, "https://inside", "http://proposed:1;"},
        {proposed, "https://outside", "http://desk:1;http://desk:1;http://desk:1;http://desk:1;"},
        {with, "https://outside", "all:1;"},
        {with, "http://outside", "http://env:1;"},
        {with, "https://a.example/", "direct;"},
        {forced, "https://a.example/", "http://forced:1;"},
        {header, "http://outside", "direct;"},
    };
    for (const auto& [sources, url, expected] : cases)
        EXPECT_EQ(textOf(sources.lookup()(url)), expected) << url;
}

TEST(SystemProxies, becomeRoutesInTheirOrder) {
    const auto script = [](const std::string& address) -> std::optional<SystemProxyList> {
        if (address != "http://wpad/wpad.dat") return std::nullopt;
        return SystemProxyList{{.kind = Kind::http, .host = "pac", .port = 8080},
                               {.kind = Kind::script, .script = address},
                               {.kind = Kind::direct}};
    };
    const std::pair<SystemProxyList, const char*> cases[] = {
        {{{.kind = Kind::direct}}, "direct;"},
        {{{.kind = Kind::http, .host = "h"}, {.kind = Kind::socks, .host = "::1", .port = 0}},
         "http://h:80;socks5h://[::1]:1080;"},
        {{{.kind = Kind::http, .host = "h", .port = 3}, {.kind = Kind::http, .host = "h", .port = 3}},
         "http://h:3;"},
        {{{.kind = Kind::other, .host = "h"}, {.kind = Kind::http, .host = "h/x"}, {.kind = Kind::http}}, ""},
        {{{.kind = Kind::http, .host = "h", .port = 70000}, {.kind = Kind::http, .host = "h", .port = -1}},
         ""},
        {{{.kind = Kind::script, .script = "http://wpad/wpad.dat"}, {.kind = Kind::http, .host = "h"}},
         "http://pac:8080;direct;http://h:80;"},
        {{{.kind = Kind::script, .script = "file:///gone"}}, ""},
    };
    for (const auto& [entries, expected] : cases) EXPECT_EQ(textOf(routesOf(entries, script)), expected);
}

}  // namespace
}  // namespace tarnik
