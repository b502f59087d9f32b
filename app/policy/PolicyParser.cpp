#include "app/policy/PolicyParser.h"

#include <algorithm>
#include <utility>

#include "app/policy/PolicyKeys.h"
#include "app/texts/PolicyTexts.h"
#include "core/foundation/Placeholders.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik::PolicyParser {
namespace {

namespace Texts = PolicyTexts;

constexpr std::size_t longestKey = 64;  // in a sentence

Fault fault(std::string_view text, std::string_view key = {}, std::string_view form = {}) {
    return {filled(text, {{"key", sanitizedLine(key, longestKey)}, {"form", std::string(form)}})};
}

// Reads the member into its field. Returns the fault, or std::nullopt.
std::optional<Fault> readMember(const Json::Member& member, PolicyStrength strength, Releases releases,
                                Policy& policy) {
    std::optional<Fault> found = fault(Texts::unknownKey, member.key);
    PolicyKeys::forEach([&](const auto& key) {
        if (key.name != member.key) return;
        auto& setting = policy.*key.field;
        auto value = key.read(member.value);
        if (key.forReleases && releases == Releases::fixed) {
            found = fault(Texts::notAllowed, key.name);
        } else if (setting) {
            found = fault(Texts::twice, key.name);
        } else if (!value) {
            found = fault(Texts::wrongValue, key.name, key.form);
        } else {
            setting = {.value = *std::move(value), .strength = strength};
            found.reset();
        }
    });
    return found;
}

// Returns the same value as JSON, or std::nullopt for a value that JSON can't have and for a key that occurs
// twice. The depth of a list is bounded.
std::optional<Json> jsonOf(const PropertyList& list) {
    if (const auto text = list.asString()) return Json(*text);
    if (const auto literal = list.asLiteral()) {
        const auto value = Json::parse(*literal, maxBytes);
        return value && !value->isObject() ? value : std::nullopt;
    }
    if (!list.isDictionary()) return std::nullopt;
    Json::Object members;
    for (const auto& entry : list.entries()) {
        const bool isTwice = !members.empty() && members.back().key == entry.key;
        auto value = isTwice ? std::nullopt : jsonOf(entry.value);
        if (!value) return std::nullopt;
        members.push_back({entry.key, *std::move(value)});
    }
    return Json(std::move(members));
}

}  // namespace

std::expected<Policy, Fault> parse(std::string_view bytes, Releases releases) {
    const auto document = Json::parse(bytes, maxBytes);
    if (!document) return std::unexpected(fault(Texts::notJson));
    return parse(*document, releases);
}

std::expected<Policy, Fault> parse(const Json& document, Releases releases) {
    if (!document.isObject()) return std::unexpected(fault(Texts::noObject));
    Policy policy;
    for (const auto& [group, settings] : document.members()) {
        if (group != Texts::forced && group != Texts::defaults)
            return std::unexpected(fault(Texts::unknownGroup, group));
        if (!settings.isObject()) return std::unexpected(fault(Texts::groupIsNoObject, group));
        const auto strength = group == Texts::forced ? PolicyStrength::forced : PolicyStrength::byDefault;
        for (const auto& member : settings.members())
            if (auto wrong = readMember(member, strength, releases, policy))
                return std::unexpected(*std::move(wrong));
    }
    return policy;
}

std::expected<Policy, Fault> parse(const PropertyList& list, Releases releases) {
    const auto document = jsonOf(list);
    if (!document) return std::unexpected(fault(Texts::notValues));
    return parse(*document, releases);
}

void merge(Policy& policy, const Policy& later) {
    PolicyKeys::forEach([&](const auto& key) {
        auto& setting = policy.*key.field;
        const auto& next = later.*key.field;
        if (next && (!setting || next->isForced() || !setting->isForced())) setting = next;
    });
}

}  // namespace tarnik::PolicyParser
