#include "app/policy/Policy.h"

#include <charconv>
#include <string_view>

#include "app/policy/PolicyKeys.h"
#include "core/node/NodeRelease.h"
#include "core/node/ReleaseVersion.h"

namespace tarnik {
namespace {

constexpr int hoursOfDay = 24;
constexpr std::string_view always = "always";
constexpr std::string_view never = "never";

// Parses one or two digits.
std::optional<int> hourIn(std::string_view text) {
    int hour = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), hour);
    const bool isNumber = error == std::errc() && end == text.data() + text.size() && text.front() != '-';
    return isNumber && text.size() <= 2 && hour < hoursOfDay ? std::optional(hour) : std::nullopt;
}

std::string textOf(bool value) {
    return value ? "true" : "false";
}
std::string textOf(std::int64_t value) {
    return std::to_string(value);
}
std::string textOf(const std::string& value) {
    return value;
}
std::string textOf(const Url& value) {
    return value.text();
}
std::string textOf(const UpdateRule& value) {
    return value.text();
}

std::string textOf(const ProxyRoute& value) {
    return value.isDirect() ? "direct" : value.address;
}

bool isLoopback(const std::string& host) {
    return host == "localhost" || host == "127.0.0.1" || host == "[::1]";
}

}  // namespace

std::optional<UpdateRule> UpdateRule::parse(std::string_view text) {
    if (text == always) return UpdateRule{.kind = Kind::always};
    if (text == never) return UpdateRule{.kind = Kind::never};
    const auto dash = text.find('-');
    if (dash == std::string_view::npos) return std::nullopt;
    const auto from = hourIn(text.substr(0, dash));
    const auto to = hourIn(text.substr(dash + 1));
    if (!from || !to || *from == *to) return std::nullopt;
    return UpdateRule{.kind = Kind::window, .fromHour = *from, .toHour = *to};
}

std::string UpdateRule::text() const {
    switch (kind) {
        case Kind::always: return std::string(always);
        case Kind::never: return std::string(never);
        case Kind::window: break;
    }
    return std::to_string(fromHour) + "-" + std::to_string(toHour);
}

bool UpdateRule::allowsHour(int hour) const {
    switch (kind) {
        case Kind::always: return true;
        case Kind::never: return false;
        case Kind::window: break;
    }
    const bool hasMidnight = fromHour > toHour;
    return hasMidnight ? hour >= fromHour || hour < toHour : hour >= fromHour && hour < toHour;
}

std::vector<PolicyEntry> Policy::entries() const {
    std::vector<PolicyEntry> entries;
    PolicyKeys::forEach([&](const auto& key) {
        if (const auto& setting = this->*key.field)
            entries.push_back({.key = std::string(key.name),
                               .value = textOf(setting->value),
                               .strength = setting->strength});
    });
    return entries;
}

std::string textOf(const std::vector<PolicyEntry>& entries) {
    std::string all;
    for (const auto& [key, value, strength] : entries) {
        if (!all.empty()) all += ", ";
        all.append(key).append(" = ").append(value);
        all += strength == PolicyStrength::forced ? " (forced)" : " (default)";
    }
    return all;
}

namespace PolicyKeys {

std::optional<Url> readAddress(const Json& value) {
    auto url = Url::parse(value.asString().value_or(""));
    if (!url || !url->host() || url->hasUserInfo() || url->hasQueryOrFragment()) return std::nullopt;
    const bool isSafe = url->scheme() == "https" || (url->scheme() == "http" && isLoopback(*url->host()));
    return isSafe ? url : std::nullopt;
}

std::optional<std::string> readKey(const Json& value) {
    constexpr std::size_t keyBytes = 32;
    auto text = value.asString();
    const auto key = text ? NodeRelease::base64url(*text) : std::nullopt;
    return key && key->size() == keyBytes ? text : std::nullopt;
}

std::optional<std::string> readVersion(const Json& value) {
    auto text = value.asString();
    return text && ReleaseVersion::parts(*text) ? text : std::nullopt;
}

std::optional<UpdateRule> readUpdates(const Json& value) {
    return UpdateRule::parse(value.asString().value_or(""));
}

std::optional<bool> readTruth(const Json& value) {
    return value.asBoolean();
}

// Every user can read the policy, so it must not have a password.
std::optional<ProxyRoute> readProxy(const Json& value) {
    const auto text = value.asString();
    return text && !text->contains('@') ? ProxyRoute::parse(*text) : std::nullopt;
}

std::optional<std::int64_t> readBytes(const Json& value) {
    const auto number = value.asInteger();
    return number && *number >= leastBytes && *number <= mostBytes ? number : std::nullopt;
}

}  // namespace PolicyKeys

}  // namespace tarnik
