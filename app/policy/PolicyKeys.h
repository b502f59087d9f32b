#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "app/policy/Policy.h"
#include "core/foundation/Json.h"

// The table of the keys of a policy.
namespace tarnik::PolicyKeys {

// A key, its field, and the form of its value.
template <class Value>
struct Key {
    std::string_view name;
    Policy::Setting<Value> Policy::* field;
    std::optional<Value> (*read)(const Json& value);
    std::string_view form;     // follows "must be"
    bool forReleases = false;  // accepted only if the build lets a policy set the place of releases
};

std::optional<Url> readAddress(const Json& value);
std::optional<std::string> readKey(const Json& value);
std::optional<std::string> readVersion(const Json& value);
std::optional<UpdateRule> readUpdates(const Json& value);
std::optional<bool> readTruth(const Json& value);
std::optional<ProxyRoute> readProxy(const Json& value);
std::optional<std::int64_t> readBytes(const Json& value);

inline constexpr std::int64_t leastBytes = 65'536;
inline constexpr std::int64_t mostBytes = 1'073'741'824;

inline constexpr std::string_view truth = "true or false";
inline constexpr std::string_view bytes = "a number of bytes from 65536 to 1073741824";

inline constexpr std::tuple all{
    Key<Url>{"releaseBase", &Policy::releaseBase, readAddress, "an https address without a query", true},
    Key<std::string>{"releaseKey", &Policy::releaseKey, readKey, "32 bytes in base64url", true},
    Key<std::string>{"minimumHelper", &Policy::minimumHelper, readVersion,
                     "a version of the helper, such as 2026.3.1"},
    Key<UpdateRule>{"updates", &Policy::updates, readUpdates,
                    R"("always", "never", or hours of the day such as "22-6")"},
    Key<bool>{"startAtLogin", &Policy::startAtLogin, readTruth, truth},
    Key<bool>{"hideSwitches", &Policy::hideSwitches, readTruth, truth},
    Key<ProxyRoute>{"proxy", &Policy::proxy, readProxy,
                    R"("direct", or a proxy's scheme, host and port without a name and a password)"},
    Key<std::int64_t>{"helperLogBytes", &Policy::helperLogBytes, readBytes, bytes},
    Key<std::int64_t>{"programLogBytes", &Policy::programLogBytes, readBytes, bytes},
    Key<bool>{"allowPairing", &Policy::allowPairing, readTruth, truth},
    Key<bool>{"allowReplacing", &Policy::allowReplacing, readTruth, truth}};

// Calls `visit` with each key of the table.
template <class Visit>
void forEach(const Visit& visit) {
    std::apply([&](const auto&... key) { (visit(key), ...); }, all);
}

}  // namespace tarnik::PolicyKeys
