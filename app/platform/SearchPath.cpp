#include "app/platform/SearchPath.h"

#include <ranges>

#include "core/foundation/Files.h"

namespace tarnik {

std::vector<std::string> splitVariable(const Environment& environment, const std::string& variable) {
    std::vector<std::string> parts;
    const auto value = environmentValue(environment, variable);
    for (const auto part : std::views::split(value, ':'))
        if (!part.empty()) parts.emplace_back(part.begin(), part.end());
    return parts;
}

std::optional<std::string> findProgram(std::string_view name, const std::vector<std::string>& folders) {
    for (const auto& folder : folders) {
        std::string program = folder + "/" + std::string(name);
        if (folder.starts_with('/') && isExecutableFile(program)) return program;
    }
    return std::nullopt;
}

}  // namespace tarnik
