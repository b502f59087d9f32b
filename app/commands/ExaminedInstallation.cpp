#include "app/commands/ExaminedInstallation.h"

#include <utility>

#include <unistd.h>

#include "app/commands/CommandHome.h"
#include "app/control/ControlClient.h"
#include "app/control/ControlFolder.h"
#include "app/control/Status.h"

namespace tarnik {
namespace {

std::optional<bool> isOn(const Json& status, std::string_view which) {
    const Json* switches = status.member("switches");
    const Json* value = switches != nullptr ? switches->member(which) : nullptr;
    const auto text = value != nullptr ? value->asString() : std::nullopt;
    return text ? std::optional(*text == "on") : std::nullopt;
}

// A program of an earlier version doesn't report its policy.
std::optional<std::string> policyOf(const Json& status) {
    if (status.member("policy") == nullptr) return std::nullopt;
    const auto parsed = Status::of(status);
    if (!parsed) return std::nullopt;
    return parsed->policy ? textOf(parsed->policy->settings) : "";
}

RunningCopy copyOf(const Json& status) {
    const Json* program = status.member("program");
    const Json* pid = program != nullptr ? program->member("pid") : nullptr;
    const Json* face = program != nullptr ? program->member("face") : nullptr;
    const auto number = pid != nullptr ? pid->asInteger() : std::nullopt;
    return {.pid = number ? std::optional(static_cast<pid_t>(*number)) : std::nullopt,
            .hasWindow = face == nullptr || face->asString() == "window",
            .accessibility = isOn(status, "accessibility"),
            .screenRecording = isOn(status, "screenRecording"),
            .policy = policyOf(status)};
}

}  // namespace

DoctorSubject examinedInstallation(const CommandOptions& options, const ProgramRun& run) {
    return {.host = run.host(),
            .folders = run.place.folders,
            .executable = run.place.executable,
            .bundle = run.place.bundle,
            .home = homeOf(options, run)};
}

std::optional<Json> statusOfRunningCopy(const ProgramRun& run) {
    constexpr Seconds timeout = Seconds(2);
    auto client = ControlClient::connect(ControlFolder::candidates(run.environment, run.place.folders));
    if (!client) return std::nullopt;
    const auto answer = client->ask({.kind = ControlRequest::Kind::status}, timeout);
    const auto* status = answer ? std::get_if<Json>(&answer->content) : nullptr;
    return status != nullptr ? std::optional(*status) : std::nullopt;
}

DoctorDeps examinationDeps(const DoctorSubject& subject, const std::optional<Json>& status,
                           const BackgroundTasks& tasks) {
    return DoctorDeps::production(subject, status ? std::optional(copyOf(*status)) : std::nullopt, tasks);
}

ExitCode endWithProbes(ExitCode code, const BackgroundTasks& tasks, const CommandOutput& output) {
    if (!tasks.isIdle() && !output.hasFailed()) ::_exit(exitStatus(code));
    return code;
}

}  // namespace tarnik
