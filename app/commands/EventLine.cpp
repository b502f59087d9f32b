#include "app/commands/EventLine.h"

#include <array>
#include <ctime>
#include <string_view>

#include "app/journal/Journal.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

using Style = CommandOutput::Style;

std::string localTime(WallTime time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm local{};
    ::localtime_r(&seconds, &local);
    std::array<char, 64> text{};
    const auto length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local);
    return {text.data(), length};
}

Style styleOf(EventCode code) {
    const auto name = nameOf(code);
    for (const std::string_view failure : {".ended", ".startFailed", ".refused", ".givenUp", ".unusable"})
        if (name.ends_with(failure) && code != EventCode::programEnded) return Style::red;
    return code == EventCode::pairingConnected ? Style::green : Style::plain;
}

}  // namespace

std::string eventLine(const JournalEvent& event, const CommandOutput& output) {
    return output.styled(Style::dim, localTime(event.time)) + "  " +
           output.styled(styleOf(event.code), sanitizedLine(event.sentence, Journal::longestText));
}

}  // namespace tarnik
