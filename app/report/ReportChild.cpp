#include "app/report/ReportChild.h"

#include "app/texts/ReportTexts.h"
#include "core/foundation/TextCleanup.h"
#include "core/process/Spawner.h"

namespace tarnik {

std::expected<std::string, std::string> ReportChild::run() const {
    constexpr std::size_t maxBytes = 1'000'000;
    constexpr std::size_t longestReason = 200;
    const auto failure = [](const std::string& reason) {
        return std::unexpected(ReportTexts::notGathered + sanitizedLine(reason, longestReason));
    };
    std::vector<std::string> arguments{"report"};
    if (nodeHome) arguments.insert(arguments.end(), {"--node-home", *nodeHome});
    if (bundle) arguments.insert(arguments.end(), {"--bundle", *bundle});
    const auto output = Spawner::run({.executable = executable,
                                      .arguments = std::move(arguments),
                                      .environment = environment,
                                      .timeout = timeout,
                                      .limit = maxBytes});
    if (!output) return failure(describe(output.error()));
    if (output->status != ExitStatus::exited(0))
        return failure(output->text.empty() ? describe(output->status) : output->text);
    return output->text;
}

}  // namespace tarnik
