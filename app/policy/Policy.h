#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/foundation/ProxyRoute.h"
#include "core/foundation/Url.h"

namespace tarnik {

// A default yields to the person's own choice, if the program offers one. A forced value doesn't.
enum class PolicyStrength { byDefault, forced };

// A value that the organisation has set.
template <class Value>
struct PolicySetting {
    Value value;
    PolicyStrength strength = PolicyStrength::forced;

    bool isForced() const { return strength == PolicyStrength::forced; }
    bool operator==(const PolicySetting&) const = default;
};

// The hours in which an update of the program may be installed.
struct UpdateRule {
    enum class Kind { always, never, window };

    Kind kind = Kind::always;
    int fromHour = 0;  // for `window`: the first hour of the day, local time
    int toHour = 0;  // for `window`: the hour after the last one; at most fromHour if the window has midnight

    // Parses "always", "never", or two different hours such as "22-6".
    static std::optional<UpdateRule> parse(std::string_view text);
    std::string text() const;

    bool allowsHour(int hour) const;

    bool operator==(const UpdateRule&) const = default;
};

// A setting in words: its key and its value as in the policy file.
struct PolicyEntry {
    std::string key;
    std::string value;
    PolicyStrength strength = PolicyStrength::forced;

    bool operator==(const PolicyEntry&) const = default;
};

// Returns the entries as one text, such as "startAtLogin = true (forced), updates = never (default)".
std::string textOf(const std::vector<PolicyEntry>& entries);

// The settings that an organisation makes for its machines. std::nullopt leaves the choice to the build and
// to the person. docs/policy.md explains each key.
//
// A value. Read once, at the start of the program.
struct Policy {
    template <class Value>
    using Setting = std::optional<PolicySetting<Value>>;

    Setting<Url> releaseBase;            // https, or http on loopback
    Setting<std::string> releaseKey;     // base64url of 32 bytes
    Setting<std::string> minimumHelper;  // a release version
    Setting<UpdateRule> updates;
    Setting<bool> startAtLogin;
    Setting<bool> hideSwitches;
    Setting<ProxyRoute> proxy;
    Setting<std::int64_t> helperLogBytes;   // of node.log; one older file is kept
    Setting<std::int64_t> programLogBytes;  // of tarnik.log; one older file is kept
    Setting<bool> allowPairing;
    Setting<bool> allowReplacing;

    // Return the value, or what applies without it.
    bool allowsPairing() const { return !allowPairing || allowPairing->value; }
    bool allowsReplacing() const { return !allowReplacing || allowReplacing->value; }
    bool hidesSwitches() const { return hideSwitches && hideSwitches->value; }
    bool locksStartAtLogin() const { return startAtLogin && startAtLogin->isForced(); }

    // Returns the settings in the order of the fields.
    std::vector<PolicyEntry> entries() const;

    bool operator==(const Policy&) const = default;
};

}  // namespace tarnik
