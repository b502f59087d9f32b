#include <optional>
#include <string>

#include "app/platform/CfText.h"
#include "app/policy/PolicyReading.h"
#include "app/texts/PolicyTexts.h"
#include "core/foundation/PropertyList.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {
namespace {

constexpr const char* policyKey = "Policy";

// Returns the value as an XML property list, so that one parser reads the policies of both systems.
std::string xmlOf(CFPropertyListRef value) {
    const CfOwner data(::CFPropertyListCreateData(nullptr, value, kCFPropertyListXMLFormat_v1_0, 0, nullptr));
    if (!data) return {};
    const auto* bytes = reinterpret_cast<const char*>(::CFDataGetBytePtr(data.get()));
    return {bytes, static_cast<std::size_t>(::CFDataGetLength(data.get()))};
}

}  // namespace

// A value that the user has set with `defaults write` isn't forced, and is ignored.
PolicyReading systemPolicy(PolicyParser::Releases releases) {
    const auto domain = CfText::of(TarnikIdentity::bundleIdentifier);
    const auto key = CfText::of(policyKey);
    const CfOwner value(::CFPreferencesCopyAppValue(key.get(), domain.get()));
    if (!value) return {};
    const auto name = std::string(TarnikIdentity::bundleIdentifier) + " " + policyKey;
    PolicyReading reading;
    if (!::CFPreferencesAppValueIsForced(key.get(), domain.get())) {
        reading.ignored.push_back(policyIgnored(name, std::string(PolicyTexts::notForced)));
        return reading;
    }
    const auto list = PropertyList::parse(xmlOf(value.get()));
    const auto policy = list ? PolicyParser::parse(*list, releases)
                             : std::unexpected(PolicyParser::Fault{std::string(PolicyTexts::notValues)});
    if (policy) {
        reading.policy = *policy;
    } else {
        reading.damage = policyDamage(name, policy.error().reason);
    }
    return reading;
}

}  // namespace tarnik
