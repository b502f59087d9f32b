#pragma once

#include <optional>

#include "app/commands/Command.h"
#include "app/doctor/Doctor.h"
#include "app/platform/BackgroundTasks.h"
#include "core/foundation/Json.h"

namespace tarnik {

// Returns the installation that the options and the stored preferences name.
DoctorSubject examinedInstallation(const CommandOptions& options, const ProgramRun& run);

// Returns the status that the running program reports; see docs/control.md. Returns std::nullopt if no
// program answers within 2 s.
std::optional<Json> statusOfRunningCopy(const ProgramRun& run);

// Returns the effects of an examination. Transfers run as tasks of `tasks`.
DoctorDeps examinationDeps(const DoctorSubject& subject, const std::optional<Json>& status,
                           const BackgroundTasks& tasks);

// Returns the code, or ends the program with it if a transfer still runs, which may use static objects. Call
// it after everything was written.
ExitCode endWithProbes(ExitCode code, const BackgroundTasks& tasks, const CommandOutput& output);

}  // namespace tarnik
