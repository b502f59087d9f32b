#include "core/process/Spawner.h"

#include <cerrno>
#include <csignal>
#include <optional>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "core/foundation/Utf8.h"
#include "core/process/CStringArray.h"
#include "core/process/FDReader.h"
#include "core/process/LockedData.h"
#include "core/process/Reaper.h"
#include "core/process/SpawnAttributes.h"
#include "core/process/SpawnPlatform.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

// A descriptor for the child. A descriptor below 3 is duplicated, because an earlier dup2 in the child could
// replace the original, and on Darwin a dup2 onto itself keeps it close-on-exec. No other code has to check a
// descriptor's number, because main() opens the standard descriptors first.
class LentDescriptor {
public:
    explicit LentDescriptor(const Stdio& stdio) : stdio_(stdio) {
        const auto fd = stdio.descriptor();
        if (!fd || *fd > STDERR_FILENO) return;
        raised_ = UniqueFd::duplicate(*fd);
        if (!raised_) error_ = errno;
        stdio_ = Stdio::fd(raised_.get());
    }

    const Stdio& stdio() const { return stdio_; }
    int error() const { return error_; }

private:
    Stdio stdio_;
    UniqueFd raised_;
    int error_ = 0;
};

// Returns the child's pid, or an errno value.
std::expected<pid_t, int> start(const SpawnRequest& request) {
    const LentDescriptor input(request.standardInput);
    const LentDescriptor output(request.standardOutput);
    const LentDescriptor errors(request.standardError);
    for (const auto* lent : {&input, &output, &errors}) {
        if (lent->error() != 0) return std::unexpected(lent->error());
    }
    SpawnAttributes records;
    records.connect(STDIN_FILENO, input.stdio(), O_RDONLY);
    records.connect(STDOUT_FILENO, output.stdio(), O_WRONLY);
    records.connect(STDERR_FILENO, errors.stdio(), O_WRONLY);
    if (const int failed = records.seal()) return std::unexpected(failed);

    const auto arguments = CStringArray::arguments(request);
    const auto environment = CStringArray::environment(request.environment);
    pid_t pid = -1;
    int error = 0;
    for (int attempt = 0; attempt <= busyRetries; ++attempt) {
        error = ::posix_spawn(&pid, request.executable.c_str(), records.actions(), records.attributes(),
                              arguments.get(), environment.get());
        if (error != ETXTBSY) break;
        std::this_thread::sleep_for(busyPause);
    }
    if (error != 0) return std::unexpected(error);
    return pid;
}

// Waits for the child's exit and stops the child at the time-out.
ExitStatus awaitEnd(ChildProcess& child, const Spawner::Command& command) {
    if (const auto status = child.waitForExit(command.timeout)) return *status;
    child.stop(command.stop);
    return child.exitStatus().value_or(ExitStatus::signaled(SIGKILL));
}

}  // namespace

std::expected<std::shared_ptr<ChildProcess>, SystemError> Spawner::spawn(const SpawnRequest& request,
                                                                         ChildProcess::OnExit onExit) {
    auto reaper = Reaper::prepare(std::move(onExit));
    if (!reaper) return std::unexpected(reaper.error());
    const auto pid = start(request);
    if (!pid) return std::unexpected(SystemError{"posix_spawn " + request.executable, pid.error()});
    return std::move(*reaper).adopt(*pid);
}

std::expected<Spawner::Pipe, SystemError> Spawner::pipe() {
    int ends[2] = {-1, -1};
    if (const int error = openPipe(ends)) return std::unexpected(SystemError{"pipe", error});
    return Pipe{UniqueFd(ends[0]), UniqueFd(ends[1])};
}

std::expected<Spawner::Output, SystemError> Spawner::run(const Command& command) {
    auto pipe = Spawner::pipe();
    if (!pipe) return std::unexpected(pipe.error());
    SpawnRequest request{.executable = command.executable,
                         .arguments = command.arguments,
                         .environment = command.environment,
                         .standardOutput = Stdio::fd(pipe->writeEnd.get()),
                         .standardError = Stdio::fd(pipe->writeEnd.get())};
    if (request.environment.empty()) request.environment = {{"PATH", defaultPath}};

    auto captured = std::make_shared<LockedData>(command.limit);
    auto reader = FDReader::start(std::move(pipe->readEnd),
                                  [captured](std::string_view chunk) { captured->append(chunk); });
    if (!reader) return std::unexpected(reader.error());
    auto child = spawn(request);
    pipe->writeEnd.reset();
    if (!child) return std::unexpected(child.error());

    const ExitStatus status = awaitEnd(**child, command);
    if (!(*reader)->waitForEOF(command.outputGrace)) (*reader)->closeAfter(Seconds::zero());
    return Output{status, decodeLossy(captured->data())};
}

}  // namespace tarnik
