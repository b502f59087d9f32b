#include "app/commands/RunningProgram.h"

#include "app/control/ControlFolder.h"
#include "app/texts/RunningTexts.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik::RunningProgram {
namespace {

constexpr std::size_t longestMessage = 1000;

const char* textOf(ControlClient::Failure failure) {
    switch (failure) {
        case ControlClient::Failure::notRunning: return RunningTexts::notRunning;
        case ControlClient::Failure::timedOut: return RunningTexts::timedOut;
        case ControlClient::Failure::ended: return RunningTexts::ended;
        case ControlClient::Failure::malformed: return RunningTexts::malformed;
    }
    return RunningTexts::malformed;
}

}  // namespace

std::expected<ControlClient, ControlClient::Failure> find(const CommandDeps& deps) {
    return ControlClient::connect(ControlFolder::candidates(deps.run.environment, deps.run.place.folders));
}

ExitCode report(const CommandDeps& deps, ControlClient::Failure failure) {
    deps.output.error(textOf(failure));
    return failure == ControlClient::Failure::notRunning ? ExitCode::notRunning : ExitCode::failed;
}

ExitCode report(const CommandDeps& deps, const ControlError& error) {
    deps.output.error(sanitizedLine(error.message, longestMessage));
    return error.code == ControlErrors::notJoined ? ExitCode::notConnected : ExitCode::failed;
}

std::expected<Json, ExitCode> ask(const CommandDeps& deps, const ControlRequest& request, Seconds timeout) {
    auto client = find(deps);
    if (!client) return std::unexpected(report(deps, client.error()));
    auto answer = client->ask(request, timeout);
    if (!answer) return std::unexpected(report(deps, answer.error()));
    if (const auto* error = std::get_if<ControlError>(&answer->content))
        return std::unexpected(report(deps, *error));
    return std::get<Json>(std::move(answer->content));
}

}  // namespace tarnik::RunningProgram
