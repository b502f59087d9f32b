#include "core/process/CStringArray.h"

#include <utility>

namespace tarnik {

CStringArray CStringArray::arguments(const SpawnRequest& request) {
    std::vector<std::string> texts{request.executable};
    texts.insert(texts.end(), request.arguments.begin(), request.arguments.end());
    return CStringArray(std::move(texts));
}

CStringArray CStringArray::environment(const Environment& environment) {
    std::vector<std::string> texts;
    texts.reserve(environment.size());
    for (const auto& [key, value] : environment) texts.emplace_back(key).append("=").append(value);
    return CStringArray(std::move(texts));
}

CStringArray::CStringArray(std::vector<std::string> texts) : texts_(std::move(texts)) {
    pointers_.reserve(texts_.size() + 1);
    for (auto& text : texts_) pointers_.push_back(text.data());
    pointers_.push_back(nullptr);
}

}  // namespace tarnik
