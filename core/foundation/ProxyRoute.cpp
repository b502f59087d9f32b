#include "core/foundation/ProxyRoute.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <utility>

#include <arpa/inet.h>
#include <sys/socket.h>

#include "core/foundation/Url.h"

namespace tarnik {
namespace {

// Each scheme that we accept, and the scheme with which libcurl lets the proxy resolve names.
constexpr std::array<std::pair<std::string_view, std::string_view>, 5> schemes{{{"http", "http"},
                                                                                {"https", "https"},
                                                                                {"socks", "socks5h"},
                                                                                {"socks4", "socks4a"},
                                                                                {"socks5", "socks5h"}}};

// The bytes of an IPv4 or IPv6 address.
using AddressBytes = std::vector<unsigned char>;

AddressBytes bytesOf(const std::string& text) {
    AddressBytes bytes(16);
    if (::inet_pton(AF_INET6, text.c_str(), bytes.data()) == 1) return bytes;
    bytes.resize(4);
    if (::inet_pton(AF_INET, text.c_str(), bytes.data()) != 1) bytes.clear();
    return bytes;
}

std::string_view withoutBrackets(std::string_view host) {
    return host.starts_with('[') && host.ends_with(']') ? host.substr(1, host.size() - 2) : host;
}

bool isInRange(const AddressBytes& address, std::string_view entry) {
    const auto slash = entry.find('/');
    const auto first = bytesOf(std::string(withoutBrackets(entry.substr(0, slash))));
    if (first.size() != address.size()) return false;
    std::size_t bits = 8 * first.size();
    if (slash != std::string_view::npos) {
        const auto digits = entry.substr(slash + 1);
        const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), bits);
        if (read.ec != std::errc() || read.ptr != digits.data() + digits.size()) return false;
    }
    if (bits > 8 * first.size()) return false;
    for (std::size_t bit = 0; bit < bits; ++bit) {
        const auto differs = static_cast<unsigned>(address[bit / 8] ^ first[bit / 8]);
        if ((differs & (0x80U >> (bit % 8))) != 0) return false;
    }
    return true;
}

bool sameText(std::string_view one, std::string_view other) {
    const auto lower = [](unsigned char byte) { return std::tolower(byte); };
    return std::ranges::equal(one, other, {}, lower, lower);
}

bool isBelow(std::string_view host, std::string_view entry) {
    if (entry.ends_with('.')) entry.remove_suffix(1);
    if (entry.starts_with('.')) entry.remove_prefix(1);
    if (entry.empty() || host.size() < entry.size()) return false;
    const auto start = host.size() - entry.size();
    return sameText(host.substr(start), entry) && (start == 0 || host[start - 1] == '.');
}

}  // namespace

std::optional<ProxyRoute> ProxyRoute::parse(std::string_view text) {
    if (sameText(text, "direct") || sameText(text, "direct://")) return ProxyRoute();
    const bool hasScheme = text.contains("://");
    const auto url = Url::parse(hasScheme ? std::string(text) : "http://" + std::string(text));
    if (!url || !url->host() || !url->port()) return std::nullopt;
    if (url->path().size() > 1 || url->hasQueryOrFragment()) return std::nullopt;
    const auto* const scheme =
        std::ranges::find(schemes, url->scheme(), &std::pair<std::string_view, std::string_view>::first);
    if (scheme == schemes.end()) return std::nullopt;
    const std::string& whole = url->text();
    const auto start = whole.find("://");
    return ProxyRoute{std::string(scheme->second) + whole.substr(start, whole.find('/', start + 3) - start)};
}

std::string ProxyRoute::name() const {
    std::string_view rest = address;
    if (const auto scheme = rest.find("://"); scheme != std::string_view::npos)
        rest.remove_prefix(scheme + 3);
    if (const auto user = rest.rfind('@'); user != std::string_view::npos) rest.remove_prefix(user + 1);
    return std::string(rest.substr(0, rest.find_first_of("/?#")));
}

bool bypassesProxy(std::string_view host, std::string_view list) {
    constexpr std::string_view separators = ", \t";
    if (list == "*") return true;
    host = withoutBrackets(host);
    if (host.ends_with('.')) host.remove_suffix(1);
    const auto address = bytesOf(std::string(host));
    while (!list.empty()) {
        const auto entry = list.substr(0, list.find_first_of(separators));
        list.remove_prefix(std::min(list.size(), entry.size() + 1));
        if (address.empty() ? isBelow(host, entry) : isInRange(address, entry)) return true;
    }
    return false;
}

}  // namespace tarnik
