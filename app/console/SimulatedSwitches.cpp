#include "app/console/SimulatedSwitches.h"

namespace tarnik {

void SimulatedSwitches::set(Switch which, bool on) {
    (which == Switch::accessibility ? snapshot_.accessibility : snapshot_.screenRecording) = on;
}

bool SimulatedSwitches::isOn(Switch which) const {
    return which == Switch::accessibility ? snapshot_.accessibility : snapshot_.screenRecording;
}

SwitchOperations SimulatedSwitches::operations() {
    return {.isOn = [this](Switch which) { return isOn(which); },
            .prompt =
                [this](Switch which) {
                    output_.line("prompt", title(which));
                    return isOn(which);
                },
            .openSettings = [this](Switch which) { output_.line("settings", settingsURL(which)); }};
}

}  // namespace tarnik
