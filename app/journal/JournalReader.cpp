#include "app/journal/JournalReader.h"

#include <algorithm>
#include <utility>

#include "app/journal/Journal.h"
#include "core/foundation/LogTail.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

constexpr std::size_t tailBytes = 2 * (Journal::capBytes + JournalEvent::maxLineBytes);  // of both files

// Another program may have changed the file. Control characters could change the user's terminal, even inside
// JSON, which escapes only a part of them.
JournalEvent cleaned(JournalEvent event) {
    const auto clean = [](const std::string& text) { return sanitizedLine(text, text.size()); };
    JournalEvent::Fields fields;
    for (auto& [name, value] : event.fields) {
        if (auto* text = std::get_if<std::string>(&value)) *text = clean(*text);
        fields.emplace(clean(name), std::move(value));
    }
    event.sentence = clean(event.sentence);
    event.fields = std::move(fields);
    return event;
}

}  // namespace

std::vector<JournalEvent> readJournal(const std::string& path, std::size_t count) {
    const std::string text = readLogTail(path, tailBytes);
    std::string_view rest = text;
    std::vector<JournalEvent> events;
    while (!rest.empty() && events.size() < count) {
        if (rest.ends_with('\n')) rest.remove_suffix(1);
        const auto line = rest.substr(rest.find_last_of('\n') + 1);  // npos + 1 is 0
        rest.remove_suffix(line.size());
        if (auto event = JournalEvent::parse(line)) events.push_back(cleaned(*std::move(event)));
    }
    std::ranges::reverse(events);
    return events;
}

}  // namespace tarnik
