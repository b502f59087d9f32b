#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnik {

// An absolute address, taken apart.
//
// A value. Only scheme and host are made lower case; nothing but the query items is decoded, so that an
// escaped letter or slash never passes for a plain one.
class Url {
public:
    // An item of the query, decoded once. A "+" stays one.
    struct QueryItem {
        std::string name;
        std::optional<std::string> value;  // none without a "="

        bool operator==(const QueryItem&) const = default;
    };

    static constexpr std::size_t maxBytes = 8192;

    // None for what isn't an address with a scheme, letter by letter, or is longer than maxBytes. None as
    // well for a port that is empty or above 65535, and for a host with escapes in it. Linear.
    static std::optional<Url> parse(std::string_view text);

    const std::string& scheme() const { return scheme_; }
    const std::optional<std::string>& host() const { return host_; }  // none when it is empty
    const std::optional<std::string>& port() const { return port_; }  // as it is written
    bool hasUserInfo() const { return hasUserInfo_; }                 // a user or a password, be it empty
    std::string_view path() const { return std::string_view(text_).substr(pathAt_, pathSize_); }
    const std::vector<QueryItem>& queryItems() const { return queryItems_; }
    bool hasQuery() const { return hasQuery_; }
    bool hasFragment() const { return hasFragment_; }

    // The address as it was parsed.
    const std::string& text() const { return text_; }

    // The address with one more component at the end of its path, after exactly one slash. What may not
    // stand in a component, a slash too, is escaped. Query and fragment stay.
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
    bool hasQuery_ = false;
    bool hasFragment_ = false;
};

}  // namespace tarnik
