#include "core/foundation/TextCleanup.h"
#include "core/node/NodeInstaller.h"
#include "core/process/Spawner.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t outputLimit = 65536;

// Reports a bad status with the URL, and every other error unchanged.
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

// The environment contains only PATH, so the user's settings can't change the behaviour of tar. Without a
// UTF-8 locale bsdtar rejects file names that aren't ASCII, so a release must not contain such names.
std::expected<void, InstallError> tarExtract(const std::string& program, const std::string& archive,
                                             const std::string& folder) {
    const auto run = Spawner::run({.executable = program,
                                   .arguments = {"-xzf", archive, "-C", folder, "--strip-components=1"},
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
