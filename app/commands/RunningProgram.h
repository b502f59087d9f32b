#pragma once

#include <expected>

#include "app/commands/Command.h"
#include "app/control/ControlClient.h"

// The running program, as the commands reach it.
namespace tarnik::RunningProgram {

// Connects to the running program. Prints nothing.
std::expected<ControlClient, ControlClient::Failure> find(const CommandDeps& deps);

// Prints the reason why the running program didn't do what was asked. Returns the exit code for it.
ExitCode report(const CommandDeps& deps, ControlClient::Failure failure);
ExitCode report(const CommandDeps& deps, const ControlError& error);

// Makes one request and returns its result. Prints the reason of a failure, and returns the exit code for it.
std::expected<Json, ExitCode> ask(const CommandDeps& deps, const ControlRequest& request,
                                  Seconds timeout = ControlClient::defaultTimeout);

}  // namespace tarnik::RunningProgram
