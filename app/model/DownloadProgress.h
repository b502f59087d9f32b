#pragma once

#include <optional>
#include <string>

#include "app/model/AppState.h"

namespace tarnik {

// How far a download has come, as a bar and a line beneath it show it.
struct DownloadProgress {
    std::optional<int> permille;  // 0 to 1000; none where no believable total was told
    std::string text;             // "18.1 MB of 40.1 MB", or "18.1 MB"

    static DownloadProgress of(const AppState::Download& download);

    bool operator==(const DownloadProgress&) const = default;
};

}  // namespace tarnik
