#include "core/process/ProgramImage.h"

#include <csignal>

#include <spawn.h>
#include <unistd.h>

#include "core/process/CStringArray.h"
#include "core/process/SpawnAttributes.h"

namespace tarnik {

struct ProgramImage::Prepared {
    std::string executable;
    CStringArray arguments;
    CStringArray environment;
    SpawnAttributes records;
    int error = 0;  // errno value of the first failed step that fills the records, or 0
};

ProgramImage::ProgramImage(const SpawnRequest& request) {
    auto prepared = std::make_unique<Prepared>(request.executable, CStringArray::arguments(request),
                                               CStringArray::environment(request.environment));
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        prepared->records.keep(standard);
    }
    prepared->error = prepared->records.seal(POSIX_SPAWN_SETEXEC);
    prepared_ = std::move(prepared);
}

ProgramImage::~ProgramImage() = default;

// With POSIX_SPAWN_SETEXEC, posix_spawn(2) replaces the calling process, as execve(2) does. The records take
// effect as in a new child (posix_spawnattr_setflags(3)).
void ProgramImage::become() const {
    if (prepared_->error != 0) return;  // incomplete records could leave descriptors open
    ::posix_spawn(nullptr, prepared_->executable.c_str(), prepared_->records.actions(),
                  prepared_->records.attributes(), prepared_->arguments.get(), prepared_->environment.get());
}

}  // namespace tarnik
