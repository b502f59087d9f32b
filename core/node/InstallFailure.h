#pragma once

#include <string>
#include <variant>

#include "core/foundation/Files.h"
#include "core/foundation/Http.h"
#include "core/foundation/SystemError.h"
#include "core/node/NodeHome.h"
#include "core/node/NodeRelease.h"

namespace tarnik {

// Why the installer gave up, in its own words.
struct InstallFailure {
    enum class Kind {
        noArtifact,    // `what`: the platform
        download,      // what could not be fetched
        checksum,      // whose digest differs
        extract,       // tar's words
        notOurFolder,  // the node home
        tooOld,        // the release's version
        notPublished,
        incomplete,
    };

    Kind kind;
    std::string what = {};

    bool operator==(const InstallFailure&) const = default;
};

// A program that the installer needs could not be started.
struct ToolStartError {
    SystemError error;

    bool operator==(const ToolStartError&) const = default;
};

// Why an install ended early.
using InstallError = std::variant<InstallFailure, NodeRelease::Failure, NodeHome::ClaimError, SystemError,
                                  HttpError, ToolStartError>;

// A whole sentence for the person; with InstallError, whatever its kind says of itself.
std::string describe(const InstallFailure& failure);
std::string describe(const ToolStartError& error);
std::string describe(const InstallError& error);

}  // namespace tarnik
