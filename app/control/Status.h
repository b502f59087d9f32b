#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/control/RunHistory.h"
#include "app/control/StatusWords.h"
#include "app/policy/Policy.h"
#include "core/foundation/Json.h"

namespace tarnik {

// The state of the program and of everything that it runs, at one moment: what `tarnik status` shows.
//
// A value. Its JSON is a stable interface, documented in docs/control.md. A reader has to
// expect states of later versions.
struct Status {
    struct Program {
        bool isRunning = false;
        std::string version;              // of the running program, or of this one
        std::optional<std::int64_t> pid;  // while it runs, like all below
        std::optional<std::string> face;  // "window" or "console"
        std::optional<WallTime> since;
        bool operator==(const Program&) const = default;
    };

    // Whether this computer is connected to an account, or why not.
    struct Connection {
        std::string state;  // one of ConnectionState
        std::string sentence;
        std::optional<std::string> reason;  // more sentences: the cause, and the next try
        bool joined = false;                // the helper has a record of an account
        bool operator==(const Connection&) const = default;
    };

    struct Child {
        std::string state;                   // one of HelperState or DriverState
        std::optional<std::string> version;  // of the helper
        ChildHistory history = {};
        std::optional<std::string> reason;  // sentences, if it fails
        bool operator==(const Child&) const = default;
    };

    struct Switches {                              // std::nullopt if the program doesn't run
        std::optional<std::string> accessibility;  // one of SwitchState
        std::optional<std::string> screenRecording;
        bool operator==(const Switches&) const = default;
    };

    struct Update {
        std::string state;                   // one of UpdateState
        std::optional<std::string> version;  // of the waiting update
        bool operator==(const Update&) const = default;
    };

    struct Install {
        std::string state;                // one of InstallState
        std::optional<std::string> text;  // the installer's line, or the reason of the failure
        std::optional<std::int64_t> receivedBytes;
        std::optional<std::int64_t> totalBytes;
        bool operator==(const Install&) const = default;
    };

    struct Folders {
        std::optional<std::string> nodeHome;  // std::nullopt if none can be used
        std::string applicationSupport;
        std::string logs;
        std::optional<std::string> socket;  // the path of the control socket
        bool operator==(const Folders&) const = default;
    };

    struct Managed {
        std::string state;                    // one of PolicyState
        std::optional<std::string> sentence;  // why files are ignored or damaged
        std::vector<PolicyEntry> settings;
        bool operator==(const Managed&) const = default;
    };

    Program program;
    Connection connection;
    Child helper;
    Child driver;
    Switches switches;
    Update update;
    Install install;
    Folders folders;
    std::optional<Managed> policy;  // std::nullopt if the organisation has set nothing

    // Returns one JSON object with all fields; an absent value is null.
    std::string json() const;

    // Reads the result of json() of this or a later version. A text or number that is missing becomes empty.
    // Returns std::nullopt if a group or a state is missing.
    static std::optional<Status> of(const Json& json);

    bool isConnected() const;

    bool operator==(const Status&) const = default;
};

}  // namespace tarnik
