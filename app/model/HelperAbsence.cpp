#include "app/model/HelperAbsence.h"

#include <algorithm>

namespace tarnik {

HelperAbsence::Limits HelperAbsence::Limits::after(Seconds away) {
    return {.away = away, .healthy = std::min(away, RestartBackoff::healthyAfter)};
}

void HelperAbsence::observe(HelperPresence presence, TimePoint now) {
    switch (presence) {
        case HelperPresence::notExpected: return end();
        case HelperPresence::away:
            runningSince_.reset();
            if (!since_) since_ = now;
            if (now >= after(*since_, limits_.away)) length_ = AbsenceLength::tooLong;
            return;
        case HelperPresence::running:
            if (!since_) return;
            if (!runningSince_) runningSince_ = now;
            if (now >= after(*runningSince_, limits_.healthy)) end();
            return;
    }
}

std::optional<TimePoint> HelperAbsence::nextChange() const {
    if (!since_) return std::nullopt;
    if (runningSince_) return after(*runningSince_, limits_.healthy);
    if (length_ == AbsenceLength::tooLong) return std::nullopt;
    return after(*since_, limits_.away);
}

void HelperAbsence::end() {
    since_.reset();
    runningSince_.reset();
    length_ = AbsenceLength::brief;
}

}  // namespace tarnik
