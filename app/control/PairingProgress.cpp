#include "app/control/PairingProgress.h"

#include <algorithm>
#include <string_view>

#include "app/control/JsonObject.h"
#include "core/process/ExitStatus.h"

namespace tarnik {
namespace {

constexpr std::size_t longestText = 16'384;

struct PhaseWord {
    std::string_view operator()(const PairingPhases::Starting&) const { return PairingWord::starting; }
    std::string_view operator()(const PairingPhases::WaitingForYes&) const {
        return PairingWord::waitingForYes;
    }
    std::string_view operator()(const PairingPhases::Connecting&) const { return PairingWord::connecting; }
    std::string_view operator()(const PairingPhases::Connected&) const { return PairingWord::connected; }
    std::string_view operator()(const PairingPhases::Ended&) const { return PairingWord::ended; }
};

// Returns the number of bytes to cut off, so that the rest is short and begins with a whole character.
std::size_t excess(std::string_view text) {
    std::size_t start = text.size() - std::min(text.size(), longestText);
    while (start > 0 && start < text.size() && (static_cast<unsigned char>(text[start]) & 0xC0U) == 0x80U)
        ++start;
    return start;
}

}  // namespace

PairingProgress PairingProgress::of(const AppState& state) {
    if (!state.pairing) return {.phase = std::string(PairingWord::checking)};
    const auto& session = *state.pairing;
    const auto* ended = std::get_if<PairingPhases::Ended>(&session.phase);
    const auto start = excess(session.text);
    return {.phase = std::string(std::visit(PhaseWord(), session.phase)),
            .text = session.text.substr(start),
            .textStart = session.textStart + start,
            .status = ended != nullptr ? std::optional(describe(ended->status)) : std::nullopt};
}

std::string PairingProgress::json() const {
    JsonObject object;
    object.addText("phase", phase);
    object.addText("text", text);
    object.addNumber("textStart", static_cast<std::int64_t>(textStart));
    object.addText("status", status);
    return object.text();
}

std::optional<PairingProgress> PairingProgress::parse(const Json& json) {
    const auto text = [&](std::string_view name) {
        const Json* found = json.member(name);
        return found != nullptr ? found->asString() : std::nullopt;
    };
    const Json* start = json.member("textStart");
    const auto phase = text("phase");
    const auto textStart = start != nullptr ? start->asInteger() : std::nullopt;
    if (!phase || !textStart || *textStart < 0) return std::nullopt;
    return PairingProgress{.phase = *phase,
                           .text = text("text").value_or(""),
                           .textStart = static_cast<std::uint64_t>(*textStart),
                           .status = text("status")};
}

}  // namespace tarnik
