#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/pairing/PairingSession.h"

namespace tarnik {

// Turns a session's snapshots, each of which holds the whole text so far, into what is new since the last
// one.
class PairingTranscript {
public:
    struct News {
        std::vector<std::string> lines;  // whole lines; the unfinished one too when the phase changes
        std::optional<PairingSession::Phase> phase;
    };

    News update(const PairingSession::Snapshot& snapshot);

private:
    std::string_view fresh(const std::string& text) const;

    std::string seen_;     // the text of the last snapshot
    std::string pending_;  // of it, the unfinished last line as far as it was not shown
    std::optional<PairingSession::Phase> phase_;
};

}  // namespace tarnik
