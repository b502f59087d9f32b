#include "app/model/DownloadProgress.h"

#include <algorithm>

#include "app/texts/FormatTexts.h"
#include "app/texts/Translation.h"

namespace tarnik {

DownloadProgress DownloadProgress::of(const AppState::Download& download) {
    const std::int64_t received = std::max<std::int64_t>(download.received, 0);
    const std::int64_t total = download.total.value_or(0);
    if (total <= 0 || received > total) return {.permille = std::nullopt, .text = formattedSize(received)};
    const double share = static_cast<double>(received) / static_cast<double>(total);
    return {.permille = static_cast<int>(share * 1000),
            .text = translated(FormatTexts::partOf,
                               {{"part", formattedSize(received)}, {"whole", formattedSize(total)}})};
}

}  // namespace tarnik
