#include <unistd.h>

#include "app/doctor/DoctorCheck.h"
#include "app/platform/DesktopEntry.h"
#include "core/foundation/Paths.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/node/LaunchdTakeover.h"

namespace tarnik {
namespace {

// The checks of a system on which applications are moved into place. They don't apply elsewhere.

std::optional<Finding> checkPlace(Examination& examination) {
    const auto& desktop = examination.deps().desktop;
    if (!desktop.ownCopy) return std::nullopt;
    const auto copy = desktop.ownCopy();
    if (copy.isTranslocated) return finding(Severity::error, DoctorTexts::translocated);
    if (copy.bundlePath != desktop.installPath)
        return finding(Severity::warning, DoctorTexts::elsewhere, copy.bundlePath);
    return fine("tarnik is at " + desktop.installPath + ".");
}

std::optional<Finding> checkLogin(Examination& examination) {
    const auto& desktop = examination.deps().desktop;
    if (!desktop.startsAtLogin) return std::nullopt;
    if (!desktop.startsAtLogin()) return finding(Severity::note, DoctorTexts::noLoginItem);
    return fine("tarnik starts when you log in.");
}

std::optional<Finding> checkAgent(Examination& examination) {
    const auto& path = examination.deps().desktop.agentPlist;
    const auto& home = examination.subject().home;
    if (!path || !home) return std::nullopt;
    const auto plist = readFile(*path, PropertyList::maxBytes);
    const auto plan = LaunchdTakeover::plan(plist, *path, *home, static_cast<std::uint32_t>(::getuid()));
    if (std::holds_alternative<LaunchdTakeover::Nothing>(plan)) return std::nullopt;
    return finding(Severity::warning, DoctorTexts::oldAgent);
}

// The checks of a desktop with a session bus. They don't apply to a service.

bool needsDesktop(const Examination& examination) {
    const auto copy = examination.deps().runningCopy();
    return !copy || copy->hasWindow;
}

std::optional<Finding> checkBus(Examination& examination) {
    const auto& desktop = examination.deps().desktop;
    if (!desktop.hasSessionBus || !needsDesktop(examination)) return std::nullopt;
    if (!desktop.hasSessionBus()) return finding(Severity::note, DoctorTexts::noBus);
    return fine("The session bus is there.");
}

std::optional<Finding> checkTray(Examination& examination) {
    const auto& desktop = examination.deps().desktop;
    if (!desktop.hasTray || !desktop.hasSessionBus || !desktop.hasSessionBus()) return std::nullopt;
    if (!needsDesktop(examination)) return std::nullopt;
    const auto tray = desktop.hasTray();
    if (!tray) return std::nullopt;
    return *tray ? fine("The desktop has a tray.") : finding(Severity::note, DoctorTexts::noTray);
}

std::optional<Finding> checkLinks(Examination& examination) {
    const auto& desktop = examination.deps().desktop;
    const bool applies = desktop.linkHandler && needsDesktop(examination);
    const auto handler = applies ? desktop.linkHandler() : std::nullopt;
    if (!handler) return std::nullopt;
    if (*handler != std::string(TarnikIdentity::bundleIdentifier) + ".desktop")
        return finding(Severity::note, DoctorTexts::otherHandler);
    return fine("tarnik opens the links from your chat.");
}

std::optional<Finding> checkAutostart(Examination& examination) {
    const auto& desktop = examination.deps().desktop;
    const auto& path = desktop.autostartEntry;
    constexpr std::size_t maxEntryBytes = 65'536;
    const auto entry = path.empty() ? std::nullopt : readFile(path, maxEntryBytes);
    if (!entry) return std::nullopt;
    const auto program = DesktopEntry(*entry).tryExec();
    if (program && !isExecutableFile(*program))
        return finding(Severity::warning, DoctorTexts::deadAutostart, path);
    if (!desktop.startsByAutostart()) return finding(Severity::note, DoctorTexts::autostartOff);
    return fine("tarnik starts when you log in.");
}

}  // namespace

std::vector<DoctorCheck> desktopChecks() {
    return {
        {.code = "place.bundle", .causes = {}, .run = checkPlace},
        {.code = "login.item", .causes = {"place.bundle"}, .run = checkLogin},
        {.code = "login.agent", .causes = {}, .run = checkAgent},
        {.code = "login.autostart", .causes = {}, .run = checkAutostart},
        {.code = "desktop.bus", .causes = {}, .run = checkBus},
        {.code = "desktop.tray", .causes = {"desktop.bus"}, .run = checkTray},
        {.code = "desktop.links", .causes = {}, .run = checkLinks},
    };
}

}  // namespace tarnik
