#include "app/commands/Commands.h"
#include "app/commands/EventLine.h"
#include "app/journal/Journal.h"
#include "app/journal/JournalReader.h"
#include "app/options/StandardOptions.h"
#include "app/texts/LogTexts.h"

namespace tarnik {
namespace {

constexpr std::size_t defaultCount = 50;

}  // namespace

ExitCode runHistory(const CommandOptions& options, const CommandDeps& deps) {
    const auto count = static_cast<std::size_t>(options.number("lines").value_or(defaultCount));
    const bool asJson = options.has(StandardOptions::json.name);
    const auto events = readJournal(Journal::pathIn(deps.run.place.folders), count);
    for (const auto& event : events) deps.output.line(asJson ? event.json() : eventLine(event, deps.output));
    if (events.empty()) deps.output.note(LogTexts::emptyHistory);
    return ExitCode::done;
}

}  // namespace tarnik
