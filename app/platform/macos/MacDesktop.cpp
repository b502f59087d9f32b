#include <cstdlib>

#include "app/platform/DesktopPlatform.h"
#include "app/platform/macos/MacActivation.h"
#include "app/platform/macos/MacBundles.h"
#include "app/platform/macos/MacDefaults.h"
#include "app/platform/macos/MacEvents.h"
#include "app/platform/macos/MacLog.h"
#include "app/platform/macos/MacLoginItem.h"
#include "app/platform/macos/MacStatusItem.h"
#include "app/platform/macos/MacSwitches.h"
#include "app/platform/macos/MacUpdates.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

namespace {

// With one of twice the size beside it, which Qt finds by its name.
std::optional<std::string> menuBarImage(const std::optional<std::string>& bundle) {
    if (!bundle) return std::nullopt;
    return *bundle + "/Contents/Resources/MenuBarIcon.png";
}

}  // namespace

// Qt brings a program to the front as soon as it has launched, unless told otherwise: at login, and after an
// update, that would take the keyboard from whatever the person types into.
void DesktopPlatform::prepare() {
    ::setenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1", 1);
}

std::optional<std::string> DesktopPlatform::whyNoWindow(const Environment&) {
    return std::nullopt;
}

// A second copy is the relocator's business; the system sends a link to the copy that runs.
DesktopPlatform DesktopPlatform::make(const DesktopRun& run) {
    MacActivation::becomeAccessory();
    return {.installPath = std::string(TarnikIdentity::installPath),
            .defaults = macDefaults(),
            .switches = macSwitches(),
            .log = macLog,
            .loginItem = macLoginItem(),
            .updates = macUpdates(macLog("updater")),
            .bundles = macBundles(run.bundle),
            .events = macEvents(),
            .statusImage = menuBarImage(run.bundle),
            .nameStatusItem = nameMacStatusItem,
            .activate = MacActivation::comeToFront};
}

}  // namespace tarnik
