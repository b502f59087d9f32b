#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/pairing/PairingSession.h"

namespace tarnik {

// Extracts the new lines from the snapshots of a session. Each snapshot contains the end of the output.
class PairingTranscript {
public:
    static constexpr std::size_t maxLines = 200;      // per update; earlier lines are dropped
    static constexpr std::size_t longestLine = 2000;  // in code points; the rest of a line is dropped

    struct News {
        std::vector<std::string> lines;  // complete lines; when the phase changes, also the unfinished line
        std::optional<PairingSession::Phase> phase;
    };

    News update(const PairingSession::Snapshot& snapshot);

private:
    void add(std::string_view text, std::vector<std::string>& lines);
    void finishLine(std::vector<std::string>& lines);

    std::uint64_t seen_ = 0;  // in bytes of the session's output
    std::string pending_;     // the part of the unfinished last line that was not returned yet
    std::optional<PairingSession::Phase> phase_;
};

}  // namespace tarnik
