#include "app/texts/ExplanationTexts.h"

#include <algorithm>
#include <chrono>

namespace tarnik::ExplanationTexts {
namespace {

std::string withDetail(const std::string& sentence, std::string detail, Language language) {
    if (detail.empty()) return sentence + ".";
    const bool isWhole = detail.ends_with('.') || detail.ends_with(".)") || detail.ends_with("…");
    if (!isWhole) detail += '.';
    return textIn(language, withReason, {{"sentence", sentence}, {"reason", detail}});
}

}  // namespace

std::string duration(Seconds time, Language language) {
    const auto total =
        std::chrono::duration_cast<std::chrono::seconds>(std::max(time, Seconds::zero())).count();
    constexpr std::int64_t minute = 60;
    constexpr std::int64_t hour = 60 * minute;
    constexpr std::int64_t day = 24 * hour;
    const auto counted = [language](std::int64_t count, Text text) {
        return textIn(language, text, {{"count", std::to_string(count)}});
    };
    if (total < 2 * minute) return counted(total, seconds);
    if (total < 2 * hour) return counted(total / minute, minutes);
    if (total < 2 * day) return counted(total / hour, hours);
    return textIn(language, days, total / day);
}

std::string ago(Text what, Seconds age, const std::string& detail) {
    return withDetail(what + (", " + duration(age)) + " ago", detail, Language::english);
}

std::string ongoing(Text what, Seconds age, const std::string& detail) {
    return withDetail(what + (", for " + duration(age)), detail, Language::english);
}

std::string stopped(const FailedChild& child, const std::string& status, Language language) {
    return filled(textIn(language, childStopped, child.times), {{"child", textIn(language, child.name)},
                                                                {"status", status},
                                                                {"time", duration(child.age, language)}});
}

std::string startFailed(const FailedChild& child, const std::string& reason, Language language) {
    return withDetail(
        filled(textIn(language, childNotStarted, child.times),
               {{"child", textIn(language, child.name)}, {"time", duration(child.age, language)}}),
        reason, language);
}

std::string nextTry(Seconds in, Language language) {
    return textIn(language, nextTryIn, {{"time", duration(in, language)}});
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
