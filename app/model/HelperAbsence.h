#pragma once

#include <optional>

#include "app/model/TrayStatus.h"
#include "core/foundation/Time.h"
#include "core/node/RestartBackoff.h"

namespace tarnik {

// Measures how long the helper has been away.
//
// A run ends the absence after the time that resets the delay of restarts. A helper that ends soon after each
// start would otherwise never be away for long, and the picture and the notice would change with each run. So
// both stay until the helper has run for that time, and the window shows the present state meanwhile.
//
// A value without a timer. The caller passes the time.
class HelperAbsence {
public:
    // Limits for tests are shorter.
    struct Limits {
        Seconds away = std::chrono::minutes(5);
        Seconds healthy = RestartBackoff::healthyAfter;

        // Returns limits for a user who should know after `away`.
        static Limits after(Seconds away);
    };

    explicit HelperAbsence(Limits limits) : limits_(limits) {}

    // Call after each change of the presence, and at nextChange().
    void observe(HelperPresence presence, TimePoint now);

    AbsenceLength length() const { return length_; }

    // Returns the time at which the length changes if the presence stays, or std::nullopt if it doesn't.
    std::optional<TimePoint> nextChange() const;

private:
    void end();

    Limits limits_;
    std::optional<TimePoint> since_;         // of the absence
    std::optional<TimePoint> runningSince_;  // of the run that may end the absence
    AbsenceLength length_ = AbsenceLength::brief;
};

}  // namespace tarnik
