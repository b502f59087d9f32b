#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "core/driver/CuaDriverEndpoint.h"
#include "core/node/InstallFailure.h"
#include "core/node/NodeState.h"
#include "core/pairing/JoinLink.h"
#include "core/pairing/PairingSession.h"
#include "core/switches/SwitchSnapshot.h"

namespace tarnik {

namespace Setups {

struct Installing {    // or looking for what is installed
    std::string text;  // the installer's latest line; empty before the first one
    bool operator==(const Installing&) const = default;
};
struct Failed {                 // for the rest of the run
    std::string text;           // the description of the error, unbounded
    std::string sentence = {};  // shown before the text; empty if the text is a plain sentence itself
    bool operator==(const Failed&) const = default;
};
struct Ready {  // the helper is installed, and its supervisor was started
    bool operator==(const Ready&) const = default;
};

}  // namespace Setups

// The progress of the helper's installation.
using Setup = std::variant<Setups::Installing, Setups::Failed, Setups::Ready>;

// Returns the setup that shows why an install failed.
Setup failedSetup(const InstallError& error);

// Everything that a face may show at one moment. A value, published by AppModel.
struct AppState {
    struct Download {  // in bytes
        std::int64_t received = 0;
        std::optional<std::int64_t> total;  // if the server reported it
        bool operator==(const Download&) const = default;
    };

    Setup setup = Setups::Installing{};
    NodeState node = NodeStates::Stopped{};
    std::optional<PairingSession::Snapshot> pairing;  // of the current attempt, or the end of the last one
    SwitchSnapshot switches;
    std::optional<std::string> linkMessage;  // one line about the last link
    std::optional<std::string> homeError;    // why there is no node home; nothing is started then
    std::optional<JoinCode> replaceOffer;    // a link held back because this machine has joined

    std::optional<Download> download;           // of the file in the installer's line
    std::optional<CuaDriverEndpoint> endpoint;  // the desktop driver's, as the supervisor received it last
    bool joined = false;                        // this machine belongs to an account
    bool checkingLink = false;                  // a link was accepted; no session exists yet
    bool accessibilityWasOn = false;            // at any time, in this run or an earlier one
    bool grantsGoStale = true;                  // see SwitchOperations
    bool stopping = false;                      // the program is about to end

    // Returns true if the user has to act, so that the window is shown at launch.
    bool needsAttention() const;

    // Returns what the window shows about a switch.
    SwitchStatus status(Switch which) const {
        const auto status = switches.status(which, accessibilityWasOn);
        return status == SwitchStatus::mayBeStale && !grantsGoStale ? SwitchStatus::notYet : status;
    }

    bool operator==(const AppState&) const = default;
};

}  // namespace tarnik
