#pragma once

#include "core/switches/Switch.h"

namespace tarnik {

// What a person asks for with a click or a key in the window.
struct WindowIntent {
    enum class Kind {
        connectPasted,  // with the text of the link field
        editLink,       // another link is being typed
        connectOffer,   // leave the current account for the offered link's
        keepCurrent,    // drop the offered link
        confirmPairing,
        cancelPairing,  // also the check of a link, before there is a pairing
        finishPairing,  // the outcome was seen
        requestSwitch,
    };

    Kind kind = Kind::connectPasted;
    Switch which = Switch::accessibility;  // of requestSwitch; the others have none

    bool operator==(const WindowIntent&) const = default;
};

}  // namespace tarnik
