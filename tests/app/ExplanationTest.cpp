#include "app/journal/Explanation.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

using namespace std::chrono_literals;
using enum EventCode;

// An event some seconds after the start of the program, with one number.
struct At {
    int seconds;
    EventCode code;
    const char* field = "";
    std::int64_t number = 0;
    std::string reason = {};
};

constexpr const char* ran = EventField::ranFor;
constexpr const char* delay = EventField::delay;
const WallTime start = std::chrono::sys_days(std::chrono::year(2026) / 3 / 1);

std::vector<Explanation> explained(const std::vector<At>& events, int now) {
    std::vector<JournalEvent> journal;
    for (const auto& [seconds, code, field, number, reason] : events) {
        JournalEvent event{
            .time = start + std::chrono::seconds(seconds), .code = code, .sentence = "S.", .fields = {}};
        event.fields = {{field, number}, {"exit", 3}, {EventField::reason, reason}};
        journal.push_back(event);
    }
    return explain(journal, start + std::chrono::seconds(now));
}

TEST(Explanation, namesTheFailureAndTheNextTry) {
    const std::vector<At> storm{{0, programStarted},
                                {1, helperStarted},
                                {2, helperEnded, ran, 61000},
                                {2, helperRestart, delay, 1000},
                                {3, helperStarted},
                                {4, helperEnded, ran, 1000},
                                {4, helperRestart, delay, 2000},
                                {6, helperStarted},
                                {8, helperEnded, ran, 2000},
                                {8, helperRestart, delay, 20000}};
    const auto with = [&storm](std::initializer_list<At> more) {
        auto events = storm;
        events.insert(events.end(), more);
        return events;
    };
    struct Case {
        std::vector<At> events;
        int now;
        std::string sentence;
    };
    const std::string stopped = "The helper stopped 3 times in a row, last with exit 3, ";
    const Case cases[] = {
        {storm, 20, stopped + "12 s ago. Next try in 8 s."},
        {storm, 30, stopped + "22 s ago. It is starting."},
        {storm, -9999, stopped + "0 s ago. Next try in 20 s."},
        {with({{28, helperStarted}}), 30, stopped + "22 s ago. It is running again, for 2 s."},
        {with({{28, helperStarted}}), 99, ""},
        {with({{28, helperStarted}, {30, helperStopped}, {30, helperStarted}}), 31, ""},
        {with({{28, helperStartFailed, "", 0, "Permission denied"}}), 30,
         "The helper failed 4 times in a row. The last time it couldn't be started, 2 s ago: Permission "
         "denied."},
        {with({{40, programStarted}}), 41, ""},
        {with({{40, programEnded}}), 220, "tarnik ended, 3 min ago."},
        {{{0, driverEnded, ran, 1}, {1, driverGivenUp}},
         2,
         "The desktop driver stopped with exit 3, 2 s ago. It starts again when a switch changes."},
        {{{0, helperEnded, ran, 1}, {0, helperRestart, delay, INT64_MAX}},
         86400,
         "The helper stopped with exit 3, 24 h ago. It is starting."},
        {{{0, installBegun}, {1, installRefused, "", 0, "The disk is full."}},
         61,
         "tarnik couldn't install its helper, 60 s ago: The disk is full. Try again in its window, or quit "
         "tarnik and start it again."},
        {{{0, installBegun}, {3, installStep}}, 5, "tarnik's helper is being installed, for 5 s: S."},
        {{{0, installBegun}, {1, installRefused}, {2, programEnded}}, 3, "tarnik ended, 1 s ago."},
        {{{0, helperWaiting}, {9, pairingConnected}}, 10, ""},
        {{{0, helperWaiting}}, 10, "The helper is installed and waits for a link from your chat."},
        {{{0, helperWaiting}, {0, pairingPrompted}},
         2,
         "tarnik's helper waits for your confirmation, for 2 s."},
        {{{0, pairingEnded}}, 2, "The last pairing ended with exit 3, 2 s ago."},
        {{{0, pairingEnded}}, 3600, ""},
    };
    for (const auto& [events, now, sentence] : cases) {
        const auto found = explained(events, now);
        EXPECT_EQ(found.empty() ? "" : found.front().sentence, sentence);
    }
    EXPECT_EQ(explained(storm, 20)[0].failures, 3);
    EXPECT_EQ(explained(storm, 20)[0].nextTry, start + 28s);
}

}  // namespace
}  // namespace tarnik
