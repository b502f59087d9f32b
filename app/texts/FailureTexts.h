#pragma once

#include <string>
#include <string_view>

#include "core/node/InstallFailure.h"
#include "core/pairing/PairingSession.h"

namespace tarnik {

// Plain sentences for failures whose only description comes from the system, a server or another program.
namespace FailureTexts {

using Text = std::string_view;

inline constexpr Text tooBusy = "This computer is too busy right now. Close some programs and try again.";
inline constexpr Text diskFull = "The disk is full. Free some space and try again.";
inline constexpr Text notAllowed =
    "tarnik isn't allowed to use a file or folder that it needs. Change its permissions and try again.";
inline constexpr Text fileFailed =
    "tarnik couldn't use a file or folder that it needs. Check that nothing else is in its place.";
inline constexpr Text programFailed =
    "tarnik couldn't start a program that it needs. Check that the program is installed.";
inline constexpr Text downloadFailed =
    "tarnik couldn't download its helper. Check your connection and try again.";
inline constexpr Text unpackFailed =
    "The downloaded file is damaged, or the disk is full. Free some space and try again.";
inline constexpr Text releaseRefused =
    "tarnik can't be sure that its helper is genuine, so nothing was installed. Try again later.";

}  // namespace FailureTexts

// Return a sentence that names the failure and what the user can do, or an empty text if describe() returns
// such a sentence already.
std::string_view plainSentence(const SystemError& error);
std::string_view plainSentence(const InstallError& error);
std::string_view plainSentence(const PairingError& error);

// Returns "Sentence. (description)", or only the part that is not empty. The length is not bounded.
std::string withDescription(std::string_view sentence, const std::string& description);

// Returns the whole message for the user.
template <typename Error>
std::string messageFor(const Error& error) {
    return withDescription(plainSentence(error), describe(error));
}

}  // namespace tarnik
