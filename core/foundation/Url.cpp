#include "core/foundation/Url.h"

#include <algorithm>

#include <boost/url/encode.hpp>
#include <boost/url/parse.hpp>
#include <boost/url/rfc/pchars.hpp>

namespace tarnik {

namespace {

std::string lowerCased(std::string text) {
    for (char& letter : text) {
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    }
    return text;
}

// `digits` contains only digits, by the grammar of URLs. A number of any length must not overflow.
bool isPort(std::string_view digits) {
    constexpr std::string_view highest = "65535";
    if (digits.empty()) return false;
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits.size() < highest.size() || (digits.size() == highest.size() && digits <= highest);
}

// `text` contains complete escapes only, by the grammar of URLs.
std::string decoded(std::string_view text) {
    boost::urls::encoding_opts plusIsAPlus;
    plusIsAPlus.space_as_plus = false;
    return boost::urls::pct_string_view(text.data(), text.size()).decode(plusIsAPlus);
}

// We split the query ourselves, because Boost's iteration over an empty query before a fragment reads beyond
// the text.
std::vector<Url::QueryItem> itemsOf(std::string_view query) {
    std::vector<Url::QueryItem> items;
    while (!query.empty()) {
        const std::string_view item = query.substr(0, query.find('&'));
        query.remove_prefix(std::min(item.size() + 1, query.size()));
        const std::size_t equals = item.find('=');
        items.push_back({.name = decoded(item.substr(0, equals)), .value = std::nullopt});
        if (equals != item.npos) items.back().value = decoded(item.substr(equals + 1));
    }
    return items;
}

}  // namespace

std::optional<Url> Url::parse(std::string_view text) {
    if (text.size() > maxBytes) return std::nullopt;
    const auto parsed = boost::urls::parse_uri({text.data(), text.size()});
    if (!parsed) return std::nullopt;

    Url url;
    url.text_ = text;
    url.scheme_ = lowerCased(parsed->scheme());
    const std::string host(std::string_view(parsed->encoded_host()));
    if (host.contains('%')) return std::nullopt;
    if (!host.empty()) url.host_ = lowerCased(host);
    if (parsed->has_port()) {
        url.port_ = parsed->port();
        if (!isPort(*url.port_)) return std::nullopt;
    }
    url.hasUserInfo_ = parsed->has_userinfo();

    // The path ends where the query or the fragment starts. Boost doesn't report the position of an empty
    // path.
    const std::size_t pathEnd = std::min(text.find_first_of("?#"), text.size());
    url.pathSize_ = parsed->encoded_path().size();
    url.pathAt_ = pathEnd - url.pathSize_;
    // Boost accepts a path directly after the host: http://127.0.0.1.example/ would have the host 127.0.0.1,
    // and http://h@g@i/ the host g.
    if (parsed->has_authority() && url.pathSize_ > 0 && !url.path().starts_with('/')) return std::nullopt;
    if (parsed->has_query()) {
        const std::size_t queryEnd = std::min(text.find('#'), text.size());
        url.queryItems_ = itemsOf(text.substr(pathEnd + 1, queryEnd - pathEnd - 1));
    }
    return url;
}

Url Url::appending(std::string_view component) const {
    std::string path(this->path());
    while (path.ends_with('/')) path.pop_back();
    path += "/" + boost::urls::encode({component.data(), component.size()}, boost::urls::pchars);

    Url longer = *this;
    longer.text_.replace(pathAt_, pathSize_, path);
    longer.pathSize_ = path.size();
    return longer;
}

}  // namespace tarnik
