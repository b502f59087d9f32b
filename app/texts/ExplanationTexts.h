#pragma once

#include <cstdint>
#include <string>

#include "app/texts/Translation.h"
#include "core/foundation/Time.h"

// The sentences of an Explanation.
namespace tarnik::ExplanationTexts {

using Text = const char*;

inline constexpr Text helper = "The helper";
inline constexpr Text driver = "The desktop driver";

inline constexpr Text starting = "It is starting.";
inline constexpr Text isRunningAgain = "It is running again.";
inline constexpr Text startsWithSwitch = "It starts again when a switch changes.";
inline constexpr Text helperWaiting = "The helper is installed and waits for a link from your chat.";
inline constexpr Text helperMissing =
    "tarnik's helper isn't there any more. Try again in its window, or quit tarnik and "
    "start it again, to install it.";
inline constexpr Text tryAgain = "Try again in its window, or quit tarnik and start it again.";
inline constexpr Text startAgain = "Start tarnik to try again.";
inline constexpr Text offerWaits = "A link for another account waits for your answer.";
inline constexpr Text linkChecked = "A link is being checked";
inline constexpr Text promptWaits = "tarnik's helper waits for your confirmation";
inline constexpr Text connecting = "tarnik's helper is connecting";
inline constexpr Text installing = "tarnik's helper is being installed";
inline constexpr Text linkRefused = "The last link was refused";
inline constexpr Text installFailed = "tarnik couldn't install its helper";
inline constexpr Text ended = "tarnik ended";

// The sentences about a child, and the durations in them.
inline constexpr CountedText childStopped{
    "{child} stopped with {status}, {time} ago.",
    "{child} stopped {count} times in a row, last with {status}, {time} ago."};
inline constexpr CountedText childNotStarted{
    "{child} couldn't be started, {time} ago",
    "{child} failed {count} times in a row. The last time it couldn't be started, {time} ago"};
inline constexpr Text withReason = "{sentence}: {reason}";
inline constexpr Text nextTryIn = "Next try in {time}.";
inline constexpr Text seconds = "{count} s";
inline constexpr Text minutes = "{count} min";
inline constexpr Text hours = "{count} h";
inline constexpr CountedText days{"{count} day", "{count} days"};

// Returns "12 s", "3 min", "5 h" or "2 days". A negative time counts as zero.
std::string duration(Seconds time, Language language = Language::english);

// Return "What, 12 s ago." and "What, for 12 s.". A `detail` that is not empty is appended: "What, 12 s ago:
// detail."
std::string ago(Text what, Seconds age, const std::string& detail = {});
std::string ongoing(Text what, Seconds age, const std::string& detail = {});

// A child that failed.
struct FailedChild {
    Text name;
    std::int64_t times = 1;  // in a row
    Seconds age;
};

// Return "The helper stopped 5 times in a row, last with exit 3, 12 s ago." and a similar sentence for a
// child that couldn't be started.
std::string stopped(const FailedChild& child, const std::string& status,
                    Language language = Language::english);
std::string startFailed(const FailedChild& child, const std::string& reason,
                        Language language = Language::english);

std::string nextTry(Seconds in, Language language = Language::english);  // "Next try in 8 s."
std::string runsAgain(Seconds since);                                    // "It is running again, for 4 s."
std::string pairingEnded(const std::string& status, Seconds age);
std::string updateWaiting(const std::string& version);

}  // namespace tarnik::ExplanationTexts
