#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "core/foundation/Files.h"

namespace tarnik {

// The folder that the helper node lives in: which one it is, its layout, and our claim on it.
//
// A value, got from resolve and not changed after. The queries look at the disk each time.
struct NodeHome {
    // Why a folder can't be the node home.
    struct ResolveError {
        enum class Reason { notAbsolute, reserved, overlapsDefault };
        Reason reason;
        std::string path;  // trimmed only for notAbsolute, else standardized
        bool operator==(const ResolveError&) const = default;
    };

    // Why a folder isn't taken.
    struct ClaimError {
        enum class Reason { notAFolder, isALink, holdsOtherFiles };
        Reason reason;
        std::string path;
        bool operator==(const ClaimError&) const = default;
    };
    using ClaimFailure = std::variant<ClaimError, SystemError>;

    static constexpr std::string_view markerName = ".tarnik-node-home";
    static constexpr std::string_view unfinishedMarkerName = ".tarnik-node-home.new";
    static constexpr std::string_view markerText =
        "This folder is tarnik-node's own. `tarnik-node uninstall` removes it whole.\n";

    std::string path;  // standardized
    bool isDefault = false;

    static std::string defaultPath(std::string_view homeDirectory);

    // The folder chosen by the user, or the default one when none or only white space is given. Refuses what
    // would be dangerous to fill or to remove later.
    static std::expected<NodeHome, ResolveError> resolve(const std::optional<std::string>& chosen,
                                                         std::string_view homeDirectory);

    // Takes the folder for the node, making it when it isn't there. Before a refusal nothing is changed;
    // a folder that is already claimed isn't touched.
    std::expected<void, ClaimFailure> claim() const;

    bool isClaimed() const;
    bool isInstalled() const;  // both the runtime and the helper package are there
    bool hasJoined() const;

    std::string marker() const;
    std::string runtimeDir() const;
    std::string nodeBinary() const;
    std::string appDir() const;
    std::string entry() const;       // the script that the runtime is given
    std::string wrapper() const;     // the helper's command line; its sign in an unmarked folder
    std::string joinRecord() const;  // written by the node once this Mac has joined an account

    bool operator==(const NodeHome&) const = default;

private:
    std::expected<void, SystemError> writeMarker() const;
    std::string unfinishedMarker() const;
};

// What the user is shown.
std::string describe(const NodeHome::ResolveError& error);
std::string describe(const NodeHome::ClaimError& error);
std::string describe(const NodeHome::ClaimFailure& failure);

}  // namespace tarnik
