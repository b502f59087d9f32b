#pragma once

#include <string>
#include <variant>

#include "core/foundation/Files.h"
#include "core/foundation/Http.h"
#include "core/foundation/SystemError.h"
#include "core/node/NodeHome.h"
#include "core/node/NodeRelease.h"

namespace tarnik {

// A failure that the installer itself detects.
struct InstallFailure {
    enum class Kind {
        noArtifact,    // `what`: the platform
        download,      // `what`: the name or the URL of the download
        checksum,      // `what`: the name of the download whose digest differs
        extract,       // `what`: the output of tar
        notOurFolder,  // `what`: the node home
        tooOld,        // `what`: the release's version
        notPublished,
        incomplete,
    };

    Kind kind;
    std::string what = {};
    int status = 0;  // for download: the HTTP status, if the server answered

    bool operator==(const InstallFailure&) const = default;
};

// A program that the installer needs could not be started.
struct ToolStartError {
    SystemError error;

    bool operator==(const ToolStartError&) const = default;
};

// The reason why an install failed.
using InstallError = std::variant<InstallFailure, NodeRelease::Failure, NodeHome::ClaimError, SystemError,
                                  HttpError, ToolStartError>;

// Return the message for the user: a phrase for system errors and NodeRelease::Failure, otherwise a sentence.
std::string describe(const InstallFailure& failure);
std::string describe(const ToolStartError& error);
std::string describe(const InstallError& error);

}  // namespace tarnik
