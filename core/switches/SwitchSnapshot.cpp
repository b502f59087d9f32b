#include "core/switches/SwitchSnapshot.h"

namespace tarnik {

SwitchStatus SwitchSnapshot::status(Switch which, bool accessibilityWasOnBefore) const {
    if (which == Switch::screenRecording) return screenRecording ? SwitchStatus::on : SwitchStatus::notYet;
    if (accessibility) return SwitchStatus::on;
    // A user who turned on one switch most likely turned on both, perhaps for another copy.
    return accessibilityWasOnBefore || screenRecording ? SwitchStatus::mayBeStale : SwitchStatus::notYet;
}

}  // namespace tarnik
