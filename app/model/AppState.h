#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "app/failures/FailureCause.h"
#include "core/driver/CuaDriverEndpoint.h"
#include "core/node/InstallFailure.h"
#include "core/node/NodeState.h"
#include "core/pairing/JoinLink.h"
#include "core/pairing/PairingSession.h"
#include "core/switches/SwitchSnapshot.h"

namespace tarnik {

namespace Setups {

struct Installing {    // or checking whether the helper is installed
    std::string text;  // the installer's latest line; empty before the first one
    bool operator==(const Installing&) const = default;
};
struct Failed {                 // final for this run
    std::string text;           // the description of the error, unbounded
    std::string sentence = {};  // shown before the text; empty if the text is itself a plain sentence
    std::optional<FailureCause> cause = {};  // shown below them, unless they contain it
    bool operator==(const Failed&) const = default;
};
struct Ready {  // the helper is installed, and its supervisor was started
    bool operator==(const Ready&) const = default;
};

}  // namespace Setups

// The progress of the helper's installation.
using Setup = std::variant<Setups::Installing, Setups::Failed, Setups::Ready>;

// Returns the setup that describes a failed install.
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
    std::optional<FailureCause> linkCause;   // why that link couldn't be checked, shown below the message
    std::optional<std::string> homeError;    // the reason why there is no node home; then no child is started
    std::optional<JoinCode> replaceOffer;    // a link held back because this machine has joined

    std::optional<Download> download;           // of the file that the installer's line names
    std::optional<CuaDriverEndpoint> endpoint;  // the desktop driver's, if it is ready
    bool joined = false;                        // this machine belongs to an account
    bool checkingLink = false;                  // a link was accepted; no session exists yet
    bool accessibilityWasOn = false;            // in this run or an earlier one
    bool grantsGoStale = true;                  // see SwitchOperations
    bool stopping = false;                      // the program is about to end

    // Returns true if the user has to act. The window is then shown at launch.
    bool needsAttention() const;

    // Returns the status of a switch, as the window shows it.
    SwitchStatus status(Switch which) const {
        const auto status = switches.status(which, accessibilityWasOn);
        return status == SwitchStatus::mayBeStale && !grantsGoStale ? SwitchStatus::notYet : status;
    }

    bool operator==(const AppState&) const = default;
};

}  // namespace tarnik
