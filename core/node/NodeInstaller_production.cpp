#include "core/foundation/TextCleanup.h"
#include "core/node/ArchiveExtraction.h"
#include "core/node/NodeInstaller.h"
#include "core/process/Spawner.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t outputLimit = 65536;

// Converts a bad status to a failure with the URL and the status. Returns any other error unchanged.
InstallError downloadError(const HttpError& error, const std::string& url) {
    if (error.kind == HttpError::Kind::badStatus)
        return InstallFailure{InstallFailure::Kind::download, url, error.code};
    return error;
}

std::expected<std::string, InstallError> httpFetch(const std::string& url, const ProxyLookup& proxies) {
    auto body = Http::fetch(url, {.proxies = proxies});
    if (!body) return std::unexpected(downloadError(body.error(), url));
    return std::move(*body);
}

std::expected<void, InstallError> httpDownload(const std::string& url, const std::string& destination,
                                               const Http::Progress& progress, const ProxyLookup& proxies) {
    const auto stored = Http::download(url, destination, Http::downloadOptions(proxies), progress);
    if (!stored) return std::unexpected(downloadError(stored.error(), url));
    return {};
}

std::optional<std::string> nodeVersion(const std::string& nodeBinary) {
    if (!isExecutableFile(nodeBinary)) return std::nullopt;
    const auto run = Spawner::run(
        {.executable = nodeBinary, .arguments = {"--version"}, .timeout = 20s, .limit = outputLimit});
    if (!run || !run->status.succeeded()) return std::nullopt;
    return std::string(trimWhitespace(run->text));
}

}  // namespace

NodeInstallerDeps NodeInstallerDeps::production(const ProxyLookup& proxies, const std::string& tar) {
    return {.fetch = [proxies](const auto& url) { return httpFetch(url, proxies); },
            .download =
                [proxies](const auto& url, const auto& destination, const auto& progress) {
                    return httpDownload(url, destination, progress, proxies);
                },
            .extract = [tar](const auto& archive,
                             const auto& folder) { return extractArchive(tar, archive, folder); },
            .runtimeVersion = nodeVersion,
            .crypto = ReleaseCrypto::platform()};
}

}  // namespace tarnik
