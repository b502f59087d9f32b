#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "app/journal/EventCode.h"
#include "core/foundation/WallTime.h"

namespace tarnik {

// Something that happened and that explains a state of the program.
//
// A value without secrets: Journal removes them before it stores an event.
struct JournalEvent {
    using Value = std::variant<std::int64_t, std::string>;
    using Fields = std::map<std::string, Value, std::less<>>;

    static constexpr std::size_t maxLineBytes = 8192;

    WallTime time;  // in whole milliseconds
    EventCode code = EventCode::programStarted;
    std::string sentence;
    Fields fields;

    // Return std::nullopt if the field is absent or has another type.
    std::optional<std::int64_t> number(std::string_view field) const;
    std::optional<std::string> text(std::string_view field) const;

    // Returns the event as one JSON object, without a line feed.
    std::string json() const;

    // Parses the result of json(). Ignores unknown members. Returns std::nullopt for anything else, such as a
    // damaged line, a line of more than maxLineBytes, or an event of a later version.
    static std::optional<JournalEvent> parse(std::string_view line);

    bool operator==(const JournalEvent&) const = default;
};

// The names of the fields that programs read.
namespace EventField {

inline constexpr const char* pid = "pid";
inline constexpr const char* version = "version";
inline constexpr const char* exit = "exit";      // an exit code
inline constexpr const char* signal = "signal";  // the signal that ended a process
inline constexpr const char* ranFor = "ranForMs";
inline constexpr const char* delay = "delayMs";
inline constexpr const char* reason = "reason";

}  // namespace EventField

}  // namespace tarnik
