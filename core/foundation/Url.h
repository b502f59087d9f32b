#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnik {

// A parsed absolute URL.
//
// A value type. scheme() and host() are in lower case. Only the query items are decoded, so that an escaped
// letter or slash in a path never equals a plain one.
class Url {
public:
    // An item of the query, decoded once. "+" is not decoded.
    struct QueryItem {
        std::string name;
        std::optional<std::string> value;  // std::nullopt without "="

        bool operator==(const QueryItem&) const = default;
    };

    static constexpr std::size_t maxBytes = 8192;

    // Returns std::nullopt for anything but a valid URL with a scheme, for more than maxBytes, for a port
    // that is empty or above 65535, and for a host with escapes. Takes linear time.
    static std::optional<Url> parse(std::string_view text);

    const std::string& scheme() const { return scheme_; }
    const std::optional<std::string>& host() const { return host_; }  // std::nullopt if empty
    const std::optional<std::string>& port() const { return port_; }  // as written
    bool hasUserInfo() const { return hasUserInfo_; }                 // even an empty one
    std::string_view path() const { return std::string_view(text_).substr(pathAt_, pathSize_); }
    const std::vector<QueryItem>& queryItems() const { return queryItems_; }
    bool hasQueryOrFragment() const { return pathAt_ + pathSize_ < text_.size(); }  // even an empty one

    // Returns the whole URL. Keeps the spelling of the parsed text.
    const std::string& text() const { return text_; }

    // Returns the URL with `component` appended to its path after exactly one slash. Characters that a
    // component can't contain, including the slash, are escaped. The query and the fragment are kept.
    Url appending(std::string_view component) const;

    bool operator==(const Url&) const = default;

private:
    std::string text_;
    std::string scheme_;
    std::optional<std::string> host_;
    std::optional<std::string> port_;
    std::vector<QueryItem> queryItems_;
    std::size_t pathAt_ = 0;
    std::size_t pathSize_ = 0;
    bool hasUserInfo_ = false;
};

}  // namespace tarnik
