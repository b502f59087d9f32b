#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "app/model/Setup.h"
#include "core/driver/CuaDriverEndpoint.h"
#include "core/node/NodeState.h"
#include "core/pairing/PairingSession.h"
#include "core/switches/SwitchSnapshot.h"

namespace tarnik {

// Everything that the application's faces may show, at one moment. A value, published by AppModel.
struct AppState {
    struct Download {  // in bytes
        std::int64_t received = 0;
        std::optional<std::int64_t> total;  // where the server told
        bool operator==(const Download&) const = default;
    };

    Setup setup = Setups::Installing{};
    NodeState node = NodeStates::Stopped{};
    std::optional<PairingSession::Snapshot> pairing;  // of the attempt under way, or how the last one ended
    SwitchSnapshot switches;
    std::optional<std::string> linkMessage;   // one line about the link that was last given
    std::optional<std::string> homeError;     // why there is no node home; then nothing is ever started
    std::optional<std::string> replaceOffer;  // a link held back because this machine has joined already

    std::optional<Download> download;           // of what the installer's line names
    std::optional<CuaDriverEndpoint> endpoint;  // of the desktop driver, as the node was last told
    bool joined = false;                        // this machine belongs to an account
    bool checkingLink = false;                  // a link was accepted, and no session exists yet
    bool accessibilityWasOn = false;            // once, in this or an earlier run
    bool grantsGoStale = true;                  // on this system
    bool stopping = false;                      // the program is about to end

    // The person has to act or to know: the window must be shown at launch.
    bool needsAttention() const;

    // What the window says about a switch.
    SwitchStatus status(Switch which) const {
        const auto status = switches.status(which, accessibilityWasOn);
        return status == SwitchStatus::mayBeStale && !grantsGoStale ? SwitchStatus::notYet : status;
    }

    bool operator==(const AppState&) const = default;
};

}  // namespace tarnik
