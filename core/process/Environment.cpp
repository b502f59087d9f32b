#include "core/process/Environment.h"

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

#include <pwd.h>
#include <unistd.h>

extern char** environ;

namespace tarnik {

Environment currentEnvironment() {
    Environment environment;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const auto equals = text.find('=');
        if (equals != std::string::npos) environment.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
    return environment;
}

std::string environmentValue(const Environment& environment, const std::string& name) {
    const auto found = environment.find(name);
    return found != environment.end() ? found->second : std::string();
}

Environment withoutPrefixes(Environment environment, std::span<const std::string_view> prefixes) {
    std::erase_if(environment, [prefixes](const auto& variable) {
        return std::ranges::any_of(prefixes, [&](auto prefix) { return variable.first.starts_with(prefix); });
    });
    return environment;
}

std::string homeDirectory() {
    constexpr std::size_t largestEntry = std::size_t{1} << 20U;
    for (std::size_t size = 1024; size <= largestEntry; size *= 2) {
        std::vector<char> text(size);
        passwd entry{};
        passwd* found = nullptr;
        const int code = ::getpwuid_r(::getuid(), &entry, text.data(), text.size(), &found);
        if (code == ERANGE) continue;
        if (code != 0 || found == nullptr || found->pw_dir == nullptr) break;
        const std::string home = found->pw_dir;
        return home.starts_with('/') ? home : "/";
    }
    return "/";
}

}  // namespace tarnik
