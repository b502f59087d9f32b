#pragma once

#include "app/model/AppState.h"

namespace tarnik {

// The status that the picture of the status item shows. A switch that is off is the user's choice and doesn't
// change it.
enum class TrayStatus {
    connected,
    working,  // nothing to do for the user
    needsYou  // only the user can change the state
};

// Whether the helper should run, and whether it runs.
enum class HelperPresence {
    notExpected,  // no account, no helper, a pairing in progress, or the program stops
    away,
    running
};

HelperPresence helperPresence(const AppState& state);

// States whether the helper has been away for so long that the user should know. See HelperAbsence.
enum class AbsenceLength { brief, tooLong };

// While a pairing is in progress the status is `working`, even if the machine has no account yet.
TrayStatus trayStatus(const AppState& state, AbsenceLength absence);

}  // namespace tarnik
