#include "app/journal/JournalReader.h"

#include <algorithm>

#include "app/journal/Journal.h"
#include "core/foundation/LogTail.h"

namespace tarnik {
namespace {

constexpr std::size_t tailBytes = 2 * (Journal::capBytes + JournalEvent::maxLineBytes);  // of both files

}  // namespace

std::vector<JournalEvent> readJournal(const std::string& path, std::size_t count) {
    const std::string text = readLogTail(path, tailBytes);
    std::string_view rest = text;
    std::vector<JournalEvent> events;
    while (!rest.empty() && events.size() < count) {
        if (rest.ends_with('\n')) rest.remove_suffix(1);
        const auto line = rest.substr(rest.find_last_of('\n') + 1);  // npos + 1 is 0
        rest.remove_suffix(line.size());
        if (auto event = JournalEvent::parse(line)) events.push_back(*std::move(event));
    }
    std::ranges::reverse(events);
    return events;
}

}  // namespace tarnik
