#include "core/node/NodeInstallerDeps.h"

#include <locale>
#include <stdexcept>

#include "core/foundation/TextCleanup.h"
#include "core/process/Spawner.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t outputLimit = 65536;

// An answer other than 200 is named by its address; whatever else went wrong on the way says so itself.
InstallError downloadError(const HttpError& error, const std::string& url) {
    if (error.kind == HttpError::Kind::badStatus) return InstallFailure{InstallFailure::Kind::download, url};
    return error;
}

std::expected<std::string, InstallError> httpFetch(const std::string& url) {
    auto body = Http::fetch(url);
    if (!body) return std::unexpected(downloadError(body.error(), url));
    return std::move(*body);
}

std::expected<void, InstallError> httpDownload(const std::string& url, const std::string& destination,
                                               const Http::Progress& progress) {
    const auto stored = Http::download(url, destination, Http::downloadOptions(), progress);
    if (!stored) return std::unexpected(downloadError(stored.error(), url));
    return {};
}

// bsdtar, which is macOS's tar, fails on a non-ASCII name without a UTF-8 locale. A name that the system
// doesn't know would be reported as an error, hence the trial.
Environment utf8Environment() {
    for (const char* name : {"C.UTF-8", "en_US.UTF-8"}) {
        try {
            const std::locale known(name);
            return {{"LC_ALL", name}};
        } catch (const std::runtime_error&) {
            continue;
        }
    }
    return {};
}

std::expected<void, InstallError> tarExtract(const std::string& program, const std::string& archive,
                                             const std::string& folder) {
    const auto run = Spawner::run({.executable = program,
                                   .arguments = {"-xzf", archive, "-C", folder, "--strip-components=1"},
                                   .environment = utf8Environment(),
                                   .timeout = 120s,
                                   .limit = outputLimit});
    if (!run) return std::unexpected(ToolStartError{run.error()});
    if (run->status.succeeded()) return {};
    return std::unexpected(
        InstallFailure{InstallFailure::Kind::extract, std::string(trimWhitespace(run->text))});
}

std::optional<std::string> nodeVersion(const std::string& nodeBinary) {
    if (!isExecutableFile(nodeBinary)) return std::nullopt;
    const auto run = Spawner::run(
        {.executable = nodeBinary, .arguments = {"--version"}, .timeout = 20s, .limit = outputLimit});
    if (!run || !run->status.succeeded()) return std::nullopt;
    return std::string(trimWhitespace(run->text));
}

}  // namespace

NodeInstallerDeps NodeInstallerDeps::production(const std::string& tar) {
    return {.fetch = httpFetch,
            .download = httpDownload,
            .extract = [tar](const auto& archive,
                             const auto& folder) { return tarExtract(tar, archive, folder); },
            .runtimeVersion = nodeVersion,
            .crypto = ReleaseCrypto::platform()};
}

}  // namespace tarnik
