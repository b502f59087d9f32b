#include "app/doctor/DoctorDesktop.h"
#include "app/platform/macos/MacOperations.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/node/LaunchdTakeover.h"

namespace tarnik {

// A program outside a bundle is never moved and has no login item.
DoctorDesktop doctorDesktop(const DoctorSubject& subject) {
    DoctorDesktop desktop{.installPath = std::string(TarnikIdentity::installPath),
                          .agentPlist = LaunchdTakeover::plistPath(subject.host.userFolder)};
    if (!subject.bundle) return desktop;
    desktop.ownCopy = macBundles(subject.bundle).ownCopy;
    desktop.startsAtLogin = [] { return macLoginItem().state() == LoginItemState::on; };
    return desktop;
}

}  // namespace tarnik
