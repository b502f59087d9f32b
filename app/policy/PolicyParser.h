#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "app/policy/Policy.h"
#include "core/foundation/Json.h"
#include "core/foundation/PropertyList.h"

// Parses policies. A fault anywhere refuses the whole policy, because half a policy may be weaker than none.
namespace tarnik::PolicyParser {

// Where a policy may set the place and the key of the helper's releases.
enum class Releases { fixed, bySettings };

// Why a policy is refused. `reason` follows the name of the file; it names the key, if one is at fault.
struct Fault {
    std::string reason;
    bool operator==(const Fault&) const = default;
};

inline constexpr std::size_t maxBytes = 65'536;

// Parses {"forced": {KEY: VALUE, ...}, "defaults": {...}}. Each of the two may be missing.
std::expected<Policy, Fault> parse(std::string_view bytes, Releases releases);
std::expected<Policy, Fault> parse(const Json& document, Releases releases);

// Parses the same content as a property list, as in the settings that a configuration profile forces.
std::expected<Policy, Fault> parse(const PropertyList& list, Releases releases);

// Adds the settings of a later file. If both have a key, a forced value replaces a default, and of two values
// of the same strength the later one counts.
void merge(Policy& policy, const Policy& later);

}  // namespace tarnik::PolicyParser
