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

// `digits` holds nothing else, by the grammar of addresses. A number of any length must not wrap around.
bool isPort(std::string_view digits) {
    constexpr std::string_view highest = "65535";
    if (digits.empty()) return false;
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits.size() < highest.size() || (digits.size() == highest.size() && digits <= highest);
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

    const auto path = parsed->encoded_path();
    url.pathAt_ = static_cast<std::size_t>(path.data() - text.data());
    url.pathSize_ = path.size();
    // The library lets a path begin right behind the host: http://127.0.0.1.example/ would have the host
    // 127.0.0.1, and http://h@g@i/ the host g.
    if (parsed->has_authority() && url.pathSize_ > 0 && !url.path().starts_with('/')) return std::nullopt;
    url.hasQuery_ = parsed->has_query();
    url.hasFragment_ = parsed->has_fragment();

    boost::urls::encoding_opts plusIsAPlus;
    plusIsAPlus.space_as_plus = false;
    for (const auto item : parsed->encoded_params()) {
        url.queryItems_.push_back({.name = item.key.decode(plusIsAPlus), .value = std::nullopt});
        if (item.has_value) url.queryItems_.back().value = item.value.decode(plusIsAPlus);
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
