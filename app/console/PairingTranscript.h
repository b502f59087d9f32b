#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/pairing/PairingSession.h"

namespace tarnik {

// Extracts the new lines from the snapshots of a session. Each snapshot contains the end of the whole text.
class PairingTranscript {
public:
    static constexpr std::size_t maxLines = 200;      // of one update; earlier ones are dropped
    static constexpr std::size_t longestLine = 2000;  // code points; the rest is dropped

    struct News {
        std::vector<std::string> lines;  // complete lines, and the unfinished one when the phase changes
        std::optional<PairingSession::Phase> phase;
    };

    News update(const PairingSession::Snapshot& snapshot);

private:
    void add(std::string_view text, std::vector<std::string>& lines);
    void finishLine(std::vector<std::string>& lines);

    std::uint64_t seen_ = 0;  // bytes of the whole text
    std::string pending_;     // the part of the unfinished last line that was not returned yet
    std::optional<PairingSession::Phase> phase_;
};

}  // namespace tarnik
