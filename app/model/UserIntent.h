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
        connectPasted,   // pair with the link in the link field
        dismissMessage,  // the user pressed a key after reading it
        connectOffer,    // replace the current account with the offered link's account
        keepCurrent,     // decline the offered link
        confirmPairing,
        cancelPairing,  // cancel the pairing or the check of a link
        finishPairing,  // dismiss the outcome
        requestSwitch,
        pasteLink,      // put the clipboard's text into the link field, then as connectPasted
        retryInstall,   // after a failed install
        restartHelper,  // now, without the delay of the next try
        showLog,        // open the helper's log
        copyDetails,    // show the redacted report and offer to copy it
        setStartAtLogin,
    };

    Kind kind = Kind::connectPasted;
    Switch which = Switch::accessibility;  // used by requestSwitch only
    std::optional<JoinCode> offer = {};    // used by connectOffer only
    bool startsAtLogin = false;            // used by setStartAtLogin only

    bool operator==(const UserIntent&) const = default;
};

// Performs the intent. Ignores pasteLink, showLog and copyDetails, which only a view can perform, and
// connectOffer if its offer is no longer the current one. `pasted` is the text of the link field. Main thread
// only.
void performIntent(const UserIntent& intent, const std::string& pasted, AppModel& model);

}  // namespace tarnik
