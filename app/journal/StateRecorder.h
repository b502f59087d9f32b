#pragma once

#include "app/journal/Journal.h"
#include "app/model/AppState.h"

namespace tarnik {

// Records what a change of the model's state means: steps of the installation and of a pairing, the endpoint
// of the driver, and the switches. The events of the children come from ChildRecorder.
void recordChange(Journal& journal, const AppState& now, const AppState& next);

}  // namespace tarnik
