// Checks a published release with the installer of the program, for `./dev release check` and `./dev release
// make`:
//
//     tarnik_release_check --base URL --public-key KEY --folder DIR [--minimum VERSION] [--have VERSION]
//                          [--runtime PLATFORM=ARCHIVE=SHA256 --runtime-base URL]
//
// Prints one sentence per line. Exits with status 1 and the first problem on standard error if a program
// would refuse the release.
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "tools/release/ReleaseCheck.h"

namespace tarnik {
namespace {

constexpr int wrongUse = 2;

using Options = std::map<std::string, std::string, std::less<>>;

// Returns std::nullopt if a word is not an option, or an option has no value.
std::optional<Options> optionsIn(int count, char** words) {
    Options options;
    for (int index = 1; index < count; index += 2) {
        const std::string_view name(words[index]);
        if (!name.starts_with("--") || index + 1 == count) return std::nullopt;
        options.emplace(name.substr(2), words[index + 1]);
    }
    return options;
}

std::optional<std::string> valueOf(const Options& options, std::string_view name) {
    const auto found = options.find(name);
    return found == options.end() ? std::nullopt : std::optional(found->second);
}

// Returns std::nullopt for anything but PLATFORM=ARCHIVE=SHA256. The version is a part of the archive's name.
std::optional<NodeRuntime> runtimeOf(const std::string& pin, const std::string& base) {
    const auto first = pin.find('=');
    const auto second = pin.find('=', first + 1);
    if (first == pin.npos || second == pin.npos) return std::nullopt;
    NodeRuntime runtime{.platform = pin.substr(0, first),
                        .version = {},
                        .base = base,
                        .file = pin.substr(first + 1, second - first - 1),
                        .sha256 = pin.substr(second + 1)};
    const auto from = runtime.file.find('-') + 1;
    runtime.version = runtime.file.substr(from, runtime.file.find('-', from) - from);
    return runtime;
}

std::optional<ReleaseCheck::Request> requestIn(const Options& options) {
    const auto base = Url::parse(valueOf(options, "base").value_or(""));
    const auto key = valueOf(options, "public-key");
    const auto folder = valueOf(options, "folder");
    if (!base || !base->host() || !key || !folder) return std::nullopt;
    ReleaseCheck::Request request{.base = *base, .publicKey = *key, .folder = *folder};
    request.minimumVersion = valueOf(options, "minimum");
    request.installedVersion = valueOf(options, "have");
    if (const auto pin = valueOf(options, "runtime")) {
        const auto at = valueOf(options, "runtime-base").value_or(std::string(NodeRuntimePin::distBase));
        request.runtime = runtimeOf(*pin, at);
        if (!request.runtime) return std::nullopt;
    }
    return request;
}

int run(int count, char** words) {
    const auto options = optionsIn(count, words);
    auto request = options ? requestIn(*options) : std::nullopt;
    if (!request) {
        std::fputs("usage: tarnik_release_check --base URL --public-key KEY --folder DIR\n", stderr);
        return wrongUse;
    }
    const ReleaseCheck check(*std::move(request), NodeInstallerDeps::production());
    const auto good = check.run([](const std::string& sentence) {
        std::puts(sentence.c_str());
        std::fflush(stdout);
    });
    if (good) return 0;
    std::fprintf(stderr, "%s\n", good.error().c_str());
    return 1;
}

}  // namespace
}  // namespace tarnik

int main(int count, char** words) {
    return tarnik::run(count, words);
}
