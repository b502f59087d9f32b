#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "app/journal/JournalEvent.h"

namespace tarnik {

// The past of a child that the program keeps running, as its events report it.
struct ChildHistory {
    struct End {
        WallTime at;
        std::string status;                    // "exit 3", "signal 9"
        std::optional<std::int64_t> ranForMs;  // std::nullopt if unknown
        bool operator==(const End&) const = default;
    };

    std::optional<std::int64_t> pid;  // of the child that runs
    std::optional<WallTime> since;    // the start of that child
    std::int64_t restarts = 0;        // planned restarts in this run of the program
    std::optional<End> lastEnd;       // the last time that it ended by itself
    std::optional<WallTime> nextTry;  // while a restart is planned

    bool operator==(const ChildHistory&) const = default;
};

// The past of one run of the program, derived from the events of its journal. A value.
struct RunHistory {
    std::optional<WallTime> since;  // the start of the program
    ChildHistory helper;
    ChildHistory driver;
    std::optional<std::string> waitingUpdate;  // its version

    // Adds the next event. The start of a program clears everything.
    void apply(const JournalEvent& event);

    static RunHistory of(std::span<const JournalEvent> events);

    bool operator==(const RunHistory&) const = default;
};

}  // namespace tarnik
