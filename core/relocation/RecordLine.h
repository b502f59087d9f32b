#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "core/relocation/Relocation.h"

namespace tarnik::Relocation {

using RecordTime = std::chrono::system_clock::time_point;

// One entry of the relocation record, still without its line feed: fields with a tab between them. What a
// path or a reason holds of control characters is written as %09 and the like.
//
// `healed`: whether the quarantine attribute could be cleared; none when that wasn't tried.
std::string recordLine(const Launch& launch, const Decision& decision, std::optional<bool> healed,
                       const std::vector<std::string>& extra, RecordTime at);

// The window was opened.
std::string windowLine(std::string_view reason, RecordTime at);

}  // namespace tarnik::Relocation
