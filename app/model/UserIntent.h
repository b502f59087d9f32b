#pragma once

#include <optional>
#include <string>

#include "core/pairing/JoinLink.h"
#include "core/switches/Switch.h"

namespace tarnik {

class AppModel;

// A request that the user makes with a click or a key in the window.
struct UserIntent {
    enum class Kind {
        connectPasted,  // pair with the link in the link field
        editLink,       // dismiss the message, because another link is being typed
        connectOffer,   // give up the current account for the one of the offered link
        keepCurrent,    // decline the offered link
        confirmPairing,
        cancelPairing,  // also cancels the check of a link, before a session exists
        finishPairing,  // dismiss the outcome
        requestSwitch,
    };

    Kind kind = Kind::connectPasted;
    Switch which = Switch::accessibility;  // of requestSwitch; ignored for the others
    std::optional<JoinCode> offer = {};    // of connectOffer

    bool operator==(const UserIntent&) const = default;
};

// Performs the intent. `pasted` is the text of the link field. An offer that is no longer the current one is
// ignored. Main thread.
void performIntent(const UserIntent& intent, const std::string& pasted, AppModel& model);

}  // namespace tarnik
