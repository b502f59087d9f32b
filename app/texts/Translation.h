#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/foundation/Placeholders.h"
#include "core/foundation/WallTime.h"

namespace tarnik {

// The language of a text. Commands, logs, the journal and the console use English. The window, the menu, the
// alert and notifications use the language of the person.
enum class Language { english, ofPerson };

// A text with a number, in English. "{count}" in it is replaced by the number.
struct CountedText {
    std::string_view one;
    std::string_view many;
};

// The operations of the person's language. An empty operation means English.
struct Translator {
    // Return the translation of an English text, or an empty text if the catalogue has none.
    std::function<std::string(std::string_view english)> text;
    std::function<std::string(const CountedText& english, std::int64_t count)> countedText;

    std::function<std::string(double number, int decimals)> number;
    std::function<std::string(WallTime)> timeOfDay;
    std::function<std::string(WallTime)> date;
};

// Sets the person's language for the whole process. Call it once, before any text is shown; the functions
// below may be called from any thread afterwards.
void setTranslator(Translator translator);

// Return the text in the person's language, or in English if the catalogue lacks it. `english` is a constant
// of the text headers. Pass only whole sentences or labels, because other languages order words differently.
std::string translated(std::string_view english);
std::string translated(std::string_view english, const Placeholders& values);
std::string translated(const CountedText& english, std::int64_t count);

// Return the text in one of the two languages, for sentences that the window and commands share.
std::string textIn(Language language, std::string_view english);
std::string textIn(Language language, std::string_view english, const Placeholders& values);
std::string textIn(Language language, const CountedText& english, std::int64_t count);

// Return values in the form of the person's locale.
std::string formattedTime(WallTime time);       // "14:37"
std::string formattedDate(WallTime time);       // "2026-01-15"
std::string formattedSize(std::int64_t bytes);  // "18.1 MB" for 18,100,000 bytes, rounded to one decimal

}  // namespace tarnik
