#include "app/texts/ExplanationTexts.h"

#include <algorithm>
#include <chrono>

namespace tarnik::ExplanationTexts {
namespace {

std::string counted(std::int64_t count, Text unit) {
    return std::to_string(count) + unit;
}

std::string withDetail(std::string sentence, const std::string& detail) {
    if (detail.empty()) return sentence + ".";
    sentence += ": " + detail;
    return detail.ends_with('.') || detail.ends_with("…") ? sentence : sentence + ".";
}

std::string optionalAge(std::optional<Seconds> age) {
    return age ? ", " + duration(*age) + " ago" : "";
}

}  // namespace

std::string duration(Seconds time) {
    const auto seconds =
        std::chrono::duration_cast<std::chrono::seconds>(std::max(time, Seconds::zero())).count();
    constexpr std::int64_t minute = 60;
    constexpr std::int64_t hour = 60 * minute;
    constexpr std::int64_t day = 24 * hour;
    if (seconds < 2 * minute) return counted(seconds, " s");
    if (seconds < 2 * hour) return counted(seconds / minute, " min");
    if (seconds < 2 * day) return counted(seconds / hour, " h");
    return counted(seconds / day, " days");
}

std::string ago(Text what, Seconds age, const std::string& detail) {
    return withDetail(what + (", " + duration(age)) + " ago", detail);
}

std::string ongoing(Text what, Seconds age, const std::string& detail) {
    return withDetail(what + (", for " + duration(age)), detail);
}

std::string stopped(Text child, std::int64_t times, const std::string& status, std::optional<Seconds> age) {
    const std::string how =
        times > 1 ? " stopped " + std::to_string(times) + " times in a row, last with " : " stopped with ";
    return child + how + status + optionalAge(age) + ".";
}

std::string startFailed(Text child, std::int64_t times, const std::string& reason,
                        std::optional<Seconds> age) {
    const std::string how = times > 1 ? " failed " + std::to_string(times) +
                                            " times in a row. The last time it couldn't be started"
                                      : " couldn't be started";
    return withDetail(child + how + optionalAge(age), reason);
}

std::string nextTry(Seconds in) {
    return "Next try in " + duration(in) + ".";
}

std::string runsAgain(Seconds since) {
    return "It is running again, for " + duration(since) + ".";
}

std::string pairingEnded(const std::string& status, Seconds age) {
    return "The last pairing ended with " + status + ", " + duration(age) + " ago.";
}

std::string updateWaiting(const std::string& version) {
    return "Update " + version + " is ready. It is installed at the first quiet moment.";
}

}  // namespace tarnik::ExplanationTexts
