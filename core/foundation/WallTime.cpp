#include "core/foundation/WallTime.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdio>

namespace tarnik {
namespace {

using namespace std::chrono;

constexpr int latestYear = 2200;  // 64 bits of nanoseconds end in 2262

// Reads the digits of one number and advances past them. Returns std::nullopt unless all are digits.
std::optional<int> takeNumber(std::string_view& text, std::size_t digits) {
    const auto number = text.substr(0, digits);
    if (number.size() != digits || number.find_first_not_of("0123456789") != number.npos) return std::nullopt;
    text.remove_prefix(digits);
    int value = 0;
    std::from_chars(number.data(), number.data() + number.size(), value);
    return value;
}

}  // namespace

std::string isoSeconds(WallTime time) {
    const auto second = floor<seconds>(time);
    const auto day = floor<days>(second);
    const year_month_day date(day);
    const hh_mm_ss clock(second - day);
    std::array<char, 64> text{};
    const int length =
        std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ",
                      static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                      static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                      static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    return {text.data(), static_cast<std::size_t>(length)};
}

std::string isoMilliseconds(WallTime time) {
    const auto fraction = floor<milliseconds>(time) - floor<seconds>(time);
    std::string text = isoSeconds(time);
    text.replace(text.size() - 1, 1, "." + std::to_string(fraction.count() + 1000).substr(1) + "Z");
    return text;
}

std::optional<WallTime> parseIsoMilliseconds(std::string_view text) {
    constexpr std::array<std::size_t, 7> digits{4, 2, 2, 2, 2, 2, 3};
    constexpr std::string_view separators = "--T::.Z";
    std::array<int, 7> parts{};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto number = takeNumber(text, digits.at(i));
        if (!number || !text.starts_with(separators.at(i))) return std::nullopt;
        text.remove_prefix(1);
        parts.at(i) = *number;
    }
    const auto [years, months, monthDays, hour, minute, second, fraction] = parts;
    const year_month_day date{year(years), month(static_cast<unsigned>(months)),
                              day(static_cast<unsigned>(monthDays))};
    const bool isInRange = years >= 1970 && years <= latestYear;
    if (!text.empty() || !isInRange || !date.ok() || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    return sys_days(date) + hours(hour) + minutes(minute) + seconds(second) + milliseconds(fraction);
}

}  // namespace tarnik
