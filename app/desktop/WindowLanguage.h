#pragma once

#include <QStringList>
#include <optional>
#include <string>

namespace tarnik {

// Sets the language of all texts of the window, including Qt's own, its direction, and the form of times and
// numbers. Without a name it is the first of the person's languages that has a catalogue, or English. A name,
// the value of the option --language, is "en", "de", or one of the languages for checks: "pseudo" and "rtl".
//
// Returns false if no catalogue has that name. Call once on the main thread, after the application object
// exists and before the first window.
bool setWindowLanguage(const std::optional<std::string>& name);

// Returns the language of the catalogue for a person who prefers these languages, the first one most. Returns
// an empty text for English, which has no catalogue.
QString catalogueFor(const QStringList& preferred);

}  // namespace tarnik
