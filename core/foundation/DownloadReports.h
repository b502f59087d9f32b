#pragma once

#include <cstdint>
#include <optional>

#include "core/foundation/Http.h"
#include "core/foundation/Time.h"

namespace tarnik {

// Limits the rate of progress reports. Used during one download, on the download's thread.
class DownloadReports {
public:
    explicit DownloadReports(const Http::Progress& progress) : progress_(progress) {}

    void moved(std::int64_t by, std::optional<std::int64_t> total) {
        constexpr auto apart =
            std::chrono::duration_cast<TimePoint::duration>(Seconds(1.0 / Http::maximumReportsPerSecond));
        received_ += by;
        total_ = total;
        if (!progress_ || steadyNow() < next_) return;
        next_ = steadyNow() + apart;
        progress_(received_, total_);
    }
    void finished() const {
        if (progress_) progress_(received_, total_);
    }

private:
    const Http::Progress& progress_;
    std::int64_t received_ = 0;
    std::optional<std::int64_t> total_;
    TimePoint next_;
};

}  // namespace tarnik
