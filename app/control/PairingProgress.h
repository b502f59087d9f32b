#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "app/model/AppState.h"
#include "core/foundation/Json.h"

namespace tarnik {

// The progress of the current link, as each answer to the request `connect` of the control socket reports it.
struct PairingProgress {
    std::string phase;                       // one of PairingWord
    std::string text = {};                   // the end of the helper's output; untrusted, show as plain text
    std::uint64_t textStart = 0;             // the number of bytes of output before `text`
    std::optional<std::string> status = {};  // of an ended pairing: "exit 3"

    // Call only while a link is being checked, or while `state` has a pairing session.
    static PairingProgress of(const AppState& state);

    std::string json() const;
    static std::optional<PairingProgress> parse(const Json& json);
};

// The words of the phases in docs/control.md. A reader has to expect words of later versions.
namespace PairingWord {

inline constexpr std::string_view checking = "checking";  // the link
inline constexpr std::string_view starting = "starting";
inline constexpr std::string_view waitingForYes = "waitingForYes";
inline constexpr std::string_view connecting = "connecting";
inline constexpr std::string_view connected = "connected";
inline constexpr std::string_view ended = "ended";

}  // namespace PairingWord

}  // namespace tarnik
