#include "core/node/ArchiveExtraction.h"

#include "core/foundation/TextCleanup.h"
#include "core/process/Spawner.h"

namespace tarnik {
namespace {

constexpr Seconds timeout = Seconds(120);
constexpr std::size_t outputLimit = 65536;

}  // namespace

// The environment contains only PATH, so the user's settings can't change the behaviour of tar. Without a
// UTF-8 locale bsdtar rejects file names that aren't ASCII, so the file names of a release must be ASCII.
std::expected<void, InstallError> extractArchive(const std::string& tar, const std::string& archive,
                                                 const std::string& folder) {
    const auto run = Spawner::run({.executable = tar,
                                   .arguments = {"-xzf", archive, "-C", folder, "--strip-components=1"},
                                   .timeout = timeout,
                                   .limit = outputLimit});
    if (!run) return std::unexpected(ToolStartError{run.error()});
    if (run->status.succeeded()) return {};
    return std::unexpected(
        InstallFailure{InstallFailure::Kind::extract, std::string(trimWhitespace(run->text))});
}

}  // namespace tarnik
