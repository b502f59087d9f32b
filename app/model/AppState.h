#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "app/failures/FailureCause.h"
#include "app/model/HelperTrouble.h"
#include "app/platform/LoginItemService.h"
#include "core/driver/CuaDriverEndpoint.h"
#include "core/node/InstallFailure.h"
#include "core/node/NodeState.h"
#include "core/pairing/JoinLink.h"
#include "core/pairing/PairingSession.h"
#include "core/switches/SwitchSnapshot.h"

namespace tarnik {

namespace Setups {

struct Installing {    // also during the check whether the helper is installed
    std::string text;  // the installer's latest line; empty before the first line
    bool operator==(const Installing&) const = default;
};
struct Failed {                 // final until the user tries again
    std::string text;           // the description of the error; its length is not bounded
    std::string sentence = {};  // shown before `text`; empty if `text` is already a plain sentence
    std::optional<FailureCause> cause = {};  // shown below the message, unless the message contains it
    bool operator==(const Failed&) const = default;
};
struct Ready {  // the helper is installed; the supervisor is started next
    bool operator==(const Ready&) const = default;
};

}  // namespace Setups

// The progress of the helper's installation.
using Setup = std::variant<Setups::Installing, Setups::Failed, Setups::Ready>;

// Returns the setup that describes a failed install.
Setup failedSetup(const InstallError& error);

// The state that a face (the window or the console) shows at one moment. A value, published by AppModel.
struct AppState {
    struct Download {  // in bytes
        std::int64_t received = 0;
        std::optional<std::int64_t> total;  // std::nullopt if the server didn't report it
        bool operator==(const Download&) const = default;
    };

    // The settings of the organisation that a face shows. They stay the same for the whole run.
    struct Managed {
        bool allowsPairing = true;
        bool locksStartAtLogin = false;
        bool hidesSwitches = false;
        bool operator==(const Managed&) const = default;
    };

    // Facts about the helper beside its state.
    struct Helper {
        std::optional<WallTime> since;         // while it runs
        std::string version;                   // empty if unknown
        std::optional<HelperTrouble> trouble;  // from the second failure in a row
        std::string lastLines;                 // of its log; empty without trouble
        bool operator==(const Helper&) const = default;
    };

    Setup setup = Setups::Installing{};
    NodeState node = NodeStates::Stopped{};
    // The current attempt's latest snapshot, or the previous attempt's final one.
    std::optional<PairingSession::Snapshot> pairing;
    SwitchSnapshot switches;
    std::optional<std::string> linkMessage;  // one line about the last link
    std::optional<FailureCause> linkCause;   // why the link couldn't be checked; shown below the message
    std::optional<std::string> homeError;    // why the node home can't be used; if set, no child is started
    std::optional<JoinCode> replaceOffer;  // a link that waits for the user, because this machine has joined

    std::optional<Download> download;           // of the file that Installing::text names
    std::optional<CuaDriverEndpoint> endpoint;  // std::nullopt unless the desktop driver is ready
    Helper helper;
    Managed managed;
    std::optional<std::string> waitingUpdate;        // the version of an update that waits for a quiet moment
    bool checksForUpdates = false;                   // an updater is configured
    std::optional<LoginItemState> startAtLogin;      // std::nullopt if unknown or without a list of programs
    std::optional<std::string> startAtLoginFailure;  // the system's message; see LoginItem
    bool joined = false;                             // this machine belongs to an account
    bool checkingLink = false;                       // a link was accepted; its session has no snapshot yet
    bool accessibilityWasOn = false;                 // in this run or an earlier one
    bool grantsGoStale = true;                       // see SwitchOperations
    bool driverHasGivenUp = false;                   // until a switch changes
    bool hasDriver = true;                           // the desktop driver is part of this build
    bool stopping = false;                           // AppModel::stop() was called

    // Returns true if the helper can't run or waits for a link, if a switch is off, or if a pairing is shown.
    // The window is then shown at launch.
    bool needsAttention() const;

    // Returns the status of a switch, as the window shows it.
    SwitchStatus status(Switch which) const {
        const auto status = switches.status(which, accessibilityWasOn);
        return status == SwitchStatus::mayBeStale && !grantsGoStale ? SwitchStatus::notYet : status;
    }

    bool operator==(const AppState&) const = default;
};

// Facts that the journal knows and the model doesn't.
struct AppFacts {
    AppState::Helper helper;
    std::optional<std::string> waitingUpdate;
    bool checksForUpdates = false;
    bool driverHasGivenUp = false;
};

}  // namespace tarnik
