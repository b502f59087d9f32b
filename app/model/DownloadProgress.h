#pragma once

#include <optional>
#include <string>

#include "app/model/AppState.h"

namespace tarnik {

// The progress of a download, for a progress bar and the line below it.
struct DownloadProgress {
    std::optional<int> permille;  // 0 to 1000; std::nullopt if the total is unknown or too small
    std::string text;             // "18.1 MB of 40.1 MB", or "18.1 MB"

    static DownloadProgress of(const AppState::Download& download);

    bool operator==(const DownloadProgress&) const = default;
};

}  // namespace tarnik
