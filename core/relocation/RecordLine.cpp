#include "core/relocation/RecordLine.h"

#include <array>
#include <cstddef>
#include <cstdio>

namespace tarnik::Relocation {

namespace {

// 2026-03-01T14:05:09Z
std::string iso8601(RecordTime at) {
    const auto second = std::chrono::floor<std::chrono::seconds>(at);
    const auto day = std::chrono::floor<std::chrono::days>(second);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(second - day);
    std::array<char, 64> text{};
    const int length =
        std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ",
                      static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                      static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                      static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
    return {text.data(), static_cast<std::size_t>(length)};
}

void appendField(std::string& line, std::string_view field) {
    constexpr std::string_view hex = "0123456789ABCDEF";
    line += '\t';
    for (const char character : field) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte != 0x7F) {
            line += character;
        } else {
            line.append({'%', hex[byte >> 4U], hex[byte & 0x0FU]});
        }
    }
}

std::string_view word(bool truth) {
    return truth ? "true" : "false";
}

}  // namespace

std::string recordLine(const Launch& launch, const Decision& decision, std::optional<bool> healed,
                       const std::vector<std::string>& extra, RecordTime at) {
    std::string line = iso8601(at);
    const auto add = [&line](const char* name, std::string_view value) {
        appendField(line, std::string(name).append(value));
    };
    add("translocated=", word(launch.isTranslocated));
    add("original=", launch.originalPath.value_or("-"));
    add("here=", launch.bundlePath);
    add("relaunch=", word(launch.isRelaunch));
    add("decision=", recordName(decision));
    if (healed) add("cleared=", word(*healed));
    for (const auto& field : extra) appendField(line, field);
    return line;
}

std::string windowLine(std::string_view reason, RecordTime at) {
    std::string line = iso8601(at);
    appendField(line, "window=opened");
    appendField(line, std::string("reason=").append(reason));
    return line;
}

}  // namespace tarnik::Relocation
