#include "app/model/DownloadProgress.h"

#include <algorithm>

namespace tarnik {
namespace {

// Returns "18.1 MB" for 18,100,000 bytes, rounded to one decimal.
std::string megabytes(std::int64_t bytes) {
    constexpr std::int64_t tenth = 100'000;
    const std::int64_t tenths = bytes / tenth + (bytes % tenth >= tenth / 2 ? 1 : 0);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB";
}

}  // namespace

DownloadProgress DownloadProgress::of(const AppState::Download& download) {
    const std::int64_t received = std::max<std::int64_t>(download.received, 0);
    const std::int64_t total = download.total.value_or(0);
    if (total <= 0 || received > total) return {.permille = std::nullopt, .text = megabytes(received)};
    const double share = static_cast<double>(received) / static_cast<double>(total);
    return {.permille = static_cast<int>(share * 1000),
            .text = megabytes(received) + " of " + megabytes(total)};
}

}  // namespace tarnik
