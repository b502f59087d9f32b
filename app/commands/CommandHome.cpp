#include "app/commands/CommandHome.h"

#include "app/commands/Command.h"
#include "app/model/ChosenHome.h"
#include "app/options/StandardOptions.h"
#include "app/platform/StoredPreferences.h"

namespace tarnik {

std::expected<NodeHome, NodeHome::ResolveError> homeOf(const CommandOptions& options, const ProgramRun& run) {
    const auto given = options.value(StandardOptions::nodeHome.name);
    if (given) return NodeHome::resolve(given, run.userFolder);
    return chosenHome(storedPreferences(run.place.folders, [](const auto&) {}), run.userFolder);
}

}  // namespace tarnik
