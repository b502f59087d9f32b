#include <array>
#include <cerrno>
#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

#include "app/NodeHomeOwner.h"
#include "app/doctor/DoctorCheck.h"
#include "core/foundation/Paths.h"

namespace tarnik {
namespace {

constexpr std::uintmax_t megabyte = 1'000'000;

const NodeHome& homeOf(const Examination& examination) {
    return *examination.subject().home;
}

std::optional<struct stat> statusOf(const std::string& path) {
    struct stat found{};
    if (::lstat(path.c_str(), &found) != 0) return std::nullopt;
    return found;
}

// Returns the path, or its closest parent that exists.
std::string existingPart(std::string path) {
    while (path != "/" && !exists(path)) path = parentFolder(path);
    return path;
}

bool isUsable(const std::string& folder) {
    return ::access(folder.c_str(), R_OK | W_OK | X_OK) == 0;
}

std::optional<Finding> checkPath(Examination& examination) {
    const auto& home = examination.subject().home;
    if (!home) return finding(Severity::error, DoctorTexts::badHome, describe(home.error()));
    return fine("The helper's folder is " + home->path + ".");
}

std::optional<Finding> checkOwner(Examination& examination) {
    const auto& path = homeOf(examination).path;
    const auto there = existingPart(path);
    struct stat found{};
    if (::stat(there.c_str(), &found) != 0) return std::nullopt;
    if (!S_ISDIR(found.st_mode)) return finding(Severity::error, DoctorTexts::homeIsAFile, there);
    // The folders above may belong to others, if this user can create a folder there.
    if (there != path) return std::nullopt;
    if (found.st_uid != ::geteuid()) return finding(Severity::error, DoctorTexts::homeIsOthers, path);
    return std::nullopt;
}

std::optional<Finding> checkModes(Examination& examination) {
    const auto& home = homeOf(examination);
    if (const auto there = existingPart(home.path); there != home.path && !isUsable(there)) {
        const auto found = statusOf(there);
        const bool isOurs = found && found->st_uid == ::geteuid();
        return finding(Severity::error, isOurs ? DoctorTexts::homeIsClosed : DoctorTexts::parentIsClosed,
                       there);
    }
    constexpr mode_t writableByOthers = S_IWGRP | S_IWOTH;
    const std::string folders[] = {home.path, home.appDir(), parentFolder(home.runtimeDir()),
                                   home.runtimeDir(), parentFolder(home.joinRecord())};
    for (const auto& path : folders) {
        const auto found = statusOf(path);
        if (!found && errno == EACCES)  // of a folder above
            return finding(Severity::error, DoctorTexts::homeIsClosed, existingPart(parentFolder(path)));
        if (!found || !S_ISDIR(found->st_mode)) continue;
        // access(2) allows everything to root.
        const bool isClosed = (found->st_mode & S_IRWXU) != S_IRWXU || !isUsable(path);
        if (isClosed) return finding(Severity::error, DoctorTexts::homeIsClosed, path);
        if ((found->st_mode & writableByOthers) != 0)
            return finding(Severity::warning, DoctorTexts::homeIsOpen, path);
    }
    return std::nullopt;
}

// Follows the rules of NodeHome::claim().
std::optional<Finding> checkClaim(Examination& examination) {
    const auto& home = homeOf(examination);
    if (home.isClaimed()) return fine("The helper's folder is tarnik's own.");
    if (isLink(home.path)) return finding(Severity::error, DoctorTexts::homeIsALink, home.path);
    const bool mayAdopt = home.isDefault && (exists(home.wrapper()) || home.hasJoined());
    if (isLink(home.marker()) || (holdsEntries(home.path) && !mayAdopt))
        return finding(Severity::error, DoctorTexts::homeIsForeign, home.path);
    return finding(Severity::note, DoctorTexts::notInstalled);
}

std::optional<Finding> checkRoom(Examination& examination) {
    const auto& path = homeOf(examination).path;
    const auto room = examination.deps().freeBytes(existingPart(path));
    if (!room) return std::nullopt;
    if (*room < 20 * megabyte) return finding(Severity::error, DoctorTexts::diskFull, path);
    if (*room < 500 * megabyte) return finding(Severity::warning, DoctorTexts::diskLow, path);
    std::array<char, 32> gigabytes{};
    std::snprintf(gigabytes.data(), gigabytes.size(), "%.1f GB",
                  static_cast<double>(*room) / static_cast<double>(1000 * megabyte));
    return fine(std::string(gigabytes.data()) + " of the disk is free.");
}

std::optional<Finding> checkLogs(Examination& examination) {
    const auto& subject = examination.subject();
    for (const auto& file : {subject.host.nodeLog, subject.journal()}) {
        const auto folder = existingPart(parentFolder(file));
        if (!isFolder(folder)) return finding(Severity::warning, DoctorTexts::logIsOdd, folder);
        if (!isUsable(folder)) return finding(Severity::warning, DoctorTexts::logsClosed, folder);
        const auto found = statusOf(file);
        if (found && (!S_ISREG(found->st_mode) || found->st_uid != ::geteuid()))
            return finding(Severity::warning, DoctorTexts::logIsOdd, file);
        if (found && ::access(file.c_str(), W_OK) != 0)
            return finding(Severity::warning, DoctorTexts::logsClosed, file);
    }
    return fine("The log folder can be written.");
}

std::optional<Finding> checkCopies(Examination& examination) {
    if (const auto copy = examination.deps().runningCopy()) {
        const auto pid = copy->pid ? " (pid " + std::to_string(*copy->pid) + ")" : "";
        return fine("tarnik is running" + pid + ".");
    }
    const auto& home = examination.subject().home;
    if (home && examination.deps().isLocked(*home)) {
        const auto owner = NodeHomeOwner::noted(*home, examination.subject().host.applicationSupport);
        const auto holder = owner ? "Process " + std::to_string(owner->pid) : "A program";
        return finding(Severity::warning, DoctorTexts::homeIsHeld, holder);
    }
    return finding(Severity::note, DoctorTexts::notRunning);
}

}  // namespace

std::vector<DoctorCheck> homeChecks() {
    return {
        {.code = "home.path", .causes = {}, .run = checkPath},
        {.code = "home.owner", .causes = {"home.path"}, .run = checkOwner},
        {.code = "home.modes", .causes = {"home.owner"}, .run = checkModes},
        {.code = "home.claim", .causes = {"home.modes"}, .run = checkClaim},
        {.code = "home.disk", .causes = {"home.path"}, .run = checkRoom},
        {.code = "logs.folder", .causes = {"home.disk"}, .run = checkLogs},
        {.code = "program.running", .causes = {}, .run = checkCopies},
    };
}

}  // namespace tarnik
