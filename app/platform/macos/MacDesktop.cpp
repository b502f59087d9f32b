#include <cstdlib>

#include "app/platform/DesktopPlatform.h"
#include "app/platform/StoredPreferences.h"
#include "app/platform/macos/MacOperations.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

namespace {

// Returns the path of the status item's image. Qt finds the @2x image in the same folder by its name.
std::optional<std::string> menuBarImage(const std::optional<std::string>& bundle) {
    if (!bundle) return std::nullopt;
    return *bundle + "/Contents/Resources/MenuBarIcon.png";
}

}  // namespace

// Keeps Qt from activating the program at its launch. At login and after an update, an activation would take
// the focus from the application that the user types into.
void DesktopPlatform::prepare() {
    ::setenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1", 1);
}

std::optional<std::string> DesktopPlatform::whyNoWindow(const Environment&) {
    return std::nullopt;
}

// SingleInstance has no operations. The relocator ends other copies, and the system delivers links to the
// running copy.
DesktopPlatform DesktopPlatform::make(const DesktopRun& run) {
    becomeAccessory();
    letModalWindowsQuit();
    return {.installPath = std::string(TarnikIdentity::installPath),
            .defaults = storedPreferences(run.folders, macLog("defaults")),
            .switches = macSwitches(),
            .log = macLog,
            .loginItem = macLoginItem(),
            .updates = macUpdates(),
            .bundles = macBundles(run.bundle),
            .events = macEvents(),
            .notices = macNotices(run.mainThread, run.bundle),
            .statusImage = menuBarImage(run.bundle),
            .hasMenuBar = true,
            .makeStatusItem = makeMacStatusItem,
            .activate = activateApplication,
            .setActivity = macActivity()};
}

}  // namespace tarnik
