#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "core/foundation/Files.h"

namespace tarnik {

// The folder of the helper node: its path, its layout, and the marker file that claims the folder for this
// program.
//
// A value, made by resolve(). Each query reads the disk.
struct NodeHome {
    // The reason why a path is refused as the node home.
    struct ResolveError {
        enum class Reason { notAbsolute, reserved, overlapsDefault };
        Reason reason;
        std::string path;  // for notAbsolute the trimmed input, otherwise standardized
        bool operator==(const ResolveError&) const = default;
    };

    // The reason why a folder can't be claimed.
    struct ClaimError {
        enum class Reason { notAFolder, isALink, holdsOtherFiles };
        Reason reason;
        std::string path;
        bool operator==(const ClaimError&) const = default;
    };
    using ClaimFailure = std::variant<ClaimError, SystemError>;

    static constexpr std::string_view markerName = ".tarnik-node-home";
    static constexpr std::string_view markerText =
        "This folder is tarnik-node's own. `tarnik-node uninstall` removes it whole.\n";

    std::string path;  // standardized
    bool isDefault = false;

    static std::string defaultPath(std::string_view homeDirectory);

    // Returns the folder that the user chose, or the default folder if `chosen` is absent or blank. Fails for
    // a relative path, and for a folder that must not be filled or removed, such as the user's home.
    static std::expected<NodeHome, ResolveError> resolve(const std::optional<std::string>& chosen,
                                                         std::string_view homeDirectory);

    // Creates the folder if it doesn't exist, and writes the marker. Changes nothing if the folder is claimed
    // already, or if the result is a ClaimError.
    std::expected<void, ClaimFailure> claim() const;

    bool isClaimed() const;
    bool isInstalled() const;  // the runtime and the helper package exist
    bool hasJoined() const;

    std::string marker() const;
    std::string runtimeDir() const;
    std::string nodeBinary() const;
    std::string appDir() const;
    std::string entry() const;       // the helper's main script, which the runtime runs
    std::string wrapper() const;     // the helper's command for terminals
    std::string joinRecord() const;  // written by the helper once this machine has joined an account

    bool operator==(const NodeHome&) const = default;
};

// Return the message for the user.
std::string describe(const NodeHome::ResolveError& error);
std::string describe(const NodeHome::ClaimError& error);
std::string describe(const NodeHome::ClaimFailure& failure);

}  // namespace tarnik
