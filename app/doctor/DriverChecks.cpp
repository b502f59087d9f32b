#include <sys/un.h>
#include <unistd.h>

#include "app/doctor/DoctorCheck.h"

namespace tarnik {
namespace {

std::optional<Finding> checkProgram(Examination& examination) {
    const auto& driver = examination.subject().host.driverExecutable;
    if (!driver) return finding(Severity::warning, DoctorTexts::noDriver);
    return fine("The desktop driver is there.");
}

// See DriverSocketDirectory.
std::optional<Finding> checkSocketFolder(Examination& examination) {
    const auto& support = examination.subject().host.applicationSupport;
    constexpr std::size_t belowSupport = std::string_view("/tarnik/cua/0123456789abcdef/cua.sock").size();
    if (support.size() + belowSupport >= sizeof(sockaddr_un::sun_path))
        return finding(Severity::warning, DoctorTexts::socketTooLong, support);
    for (const auto& folder : {support, support + "/tarnik", support + "/tarnik/cua"}) {
        const bool isClosed = exists(folder) && ::access(folder.c_str(), R_OK | W_OK | X_OK) != 0;
        if (isClosed || (folder != support && isLink(folder)) || (exists(folder) && !isFolder(folder)))
            return finding(Severity::warning, DoctorTexts::supportClosed, folder);
    }
    return std::nullopt;
}

// Only the running program knows the switches, because reading them needs the desktop.
std::optional<Finding> checkSwitches(Examination& examination) {
    const auto copy = examination.deps().runningCopy();
    if (!copy || !copy->accessibility || !copy->screenRecording) return std::nullopt;
    std::string off;
    if (!*copy->accessibility) off = "Accessibility";
    if (!*copy->screenRecording) off += std::string(off.empty() ? "" : ", ") + "Screen Recording";
    if (off.empty()) return fine("Both switches are on.");
    auto found = finding(Severity::note, DoctorTexts::switchesOff);
    found.sentence += off + ".";
    return found;
}

}  // namespace

std::vector<DoctorCheck> driverChecks() {
    return {
        {.code = "driver.program", .causes = {}, .run = checkProgram},
        {.code = "driver.socket", .causes = {"driver.program"}, .run = checkSocketFolder},
        {.code = "driver.switches", .causes = {}, .run = checkSwitches},
    };
}

}  // namespace tarnik
