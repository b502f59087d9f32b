#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/pairing/PairingSession.h"

namespace tarnik {

// Turns a session's snapshots, each of which holds the end of the text so far, into what is new since the
// last one.
class PairingTranscript {
public:
    static constexpr std::size_t maxLines = 200;      // of one update; earlier ones are left out
    static constexpr std::size_t longestLine = 2000;  // code points; the rest is left out

    struct News {
        std::vector<std::string> lines;  // whole lines; the unfinished one too when the phase changes
        std::optional<PairingSession::Phase> phase;
    };

    News update(const PairingSession::Snapshot& snapshot);

private:
    void add(std::string_view text, std::vector<std::string>& lines);
    void finishLine(std::vector<std::string>& lines);

    std::uint64_t seen_ = 0;  // bytes of all text
    std::string pending_;     // the unfinished last line as far as it was not shown
    std::optional<PairingSession::Phase> phase_;
};

}  // namespace tarnik
