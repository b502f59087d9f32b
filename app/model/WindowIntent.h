#pragma once

#include <optional>
#include <string>

#include "core/pairing/JoinLink.h"
#include "core/switches/Switch.h"

namespace tarnik {

class AppModel;

// What the user asks for with a click or a key in the window.
struct WindowIntent {
    enum class Kind {
        connectPasted,  // with the text of the link field
        editLink,       // another link is being typed
        connectOffer,   // give up the current account for the one of the offered link
        keepCurrent,    // decline the offered link
        confirmPairing,
        cancelPairing,  // also cancels the check of a link, before there is a pairing
        finishPairing,  // the outcome was seen
        requestSwitch,
    };

    Kind kind = Kind::connectPasted;
    Switch which = Switch::accessibility;  // of requestSwitch; ignored for the others
    std::optional<JoinCode> offer = {};    // of connectOffer

    bool operator==(const WindowIntent&) const = default;
};

// Carries out the intent. `pasted` is the text of the link field. An offer is accepted only while it is still
// the current one. Main thread.
void performIntent(const WindowIntent& intent, const std::string& pasted, AppModel& model);

}  // namespace tarnik
