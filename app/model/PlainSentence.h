#pragma once

#include <string>
#include <string_view>

#include "app/model/Setup.h"
#include "core/node/InstallFailure.h"
#include "core/pairing/PairingFailure.h"

namespace tarnik {

// Returns what a person reads before the error's own words: what happened, and what they can do. Empty if the
// error's description is such a sentence itself.
std::string_view plainSentence(const SystemError& error);
std::string_view plainSentence(const InstallError& error);
std::string_view plainSentence(const PairingError& error);

// Returns "Sentence. (words)", or whichever of the two is not empty. Not bounded.
std::string sentenceThenWords(std::string_view sentence, const std::string& words);

// Returns the whole message for the person, in one line unless the words have more.
template <typename Error>
std::string messageFor(const Error& error) {
    return sentenceThenWords(plainSentence(error), describe(error));
}

// Returns the setup that shows why an install failed.
Setups::Failed failedSetup(const InstallError& error);

}  // namespace tarnik
