#include "app/texts/Translation.h"

#include <array>
#include <ctime>
#include <utility>

#include "app/texts/FormatTexts.h"

namespace tarnik {
namespace {

Translator& translator() {
    static Translator current;
    return current;
}

std::string withCount(std::string_view text, std::int64_t count) {
    return filled(text, {{.name = "count", .value = std::to_string(count)}});
}

std::tm localTime(WallTime time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm local{};
    ::localtime_r(&seconds, &local);
    return local;
}

}  // namespace

void setTranslator(Translator next) {
    translator() = std::move(next);
}

std::string textIn(Language language, std::string_view english) {
    if (language == Language::english || english.empty() || !translator().text) return std::string(english);
    auto text = translator().text(english);
    return text.empty() ? std::string(english) : text;
}

std::string textIn(Language language, std::string_view english, const Placeholders& values) {
    return filled(textIn(language, english), values);
}

std::string textIn(Language language, const CountedText& english, std::int64_t count) {
    if (language == Language::ofPerson && translator().countedText)
        if (const auto text = translator().countedText(english, count); !text.empty())
            return withCount(text, count);
    return withCount(count == 1 ? english.one : english.many, count);
}

std::string translated(std::string_view english) {
    return textIn(Language::ofPerson, english);
}

std::string translated(std::string_view english, const Placeholders& values) {
    return textIn(Language::ofPerson, english, values);
}

std::string translated(const CountedText& english, std::int64_t count) {
    return textIn(Language::ofPerson, english, count);
}

std::string formattedTime(WallTime time) {
    if (translator().timeOfDay) return translator().timeOfDay(time);
    const auto local = localTime(time);
    std::array<char, 8> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%H:%M", &local)};
}

std::string formattedDate(WallTime time) {
    if (translator().date) return translator().date(time);
    const auto local = localTime(time);
    std::array<char, 16> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d", &local)};
}

std::string formattedSize(std::int64_t bytes) {
    constexpr std::int64_t tenth = 100'000;  // of a megabyte
    const std::int64_t tenths = bytes / tenth + (bytes % tenth >= tenth / 2 ? 1 : 0);
    const auto number = translator().number ? translator().number(static_cast<double>(tenths) / 10, 1)
                                            : std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
    return translated(FormatTexts::megabytes, {{.name = "number", .value = number}});
}

}  // namespace tarnik
