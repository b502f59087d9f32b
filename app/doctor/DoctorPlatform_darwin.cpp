#include "app/doctor/DoctorPlatform.h"

#include "core/foundation/TarnikIdentity.h"
#include "core/node/LaunchdTakeover.h"

namespace tarnik {

// The system runs a translocated bundle from a path with this folder.
DoctorDesktop doctorDesktop(const DoctorSubject& subject) {
    const auto ownCopy = [bundle = subject.bundle.value_or("")] {
        return OwnCopy{.bundlePath = bundle, .isTranslocated = bundle.contains("/AppTranslocation/")};
    };
    DoctorDesktop desktop{.installPath = std::string(TarnikIdentity::installPath),
                          .agentPlist = LaunchdTakeover::plistPath(subject.host.userFolder)};
    // A program outside a bundle is never moved.
    if (subject.bundle) desktop.ownCopy = ownCopy;
    return desktop;
}

}  // namespace tarnik
