#include "app/console/ServiceOutput.h"

#include <string>

#include <poll.h>
#include <sys/stat.h>

#include "core/foundation/Files.h"
#include "core/foundation/WallTime.h"

namespace tarnik {
namespace {

// The priorities of syslog(3).
constexpr char error = '3';
constexpr char warning = '4';
constexpr char information = '6';

// The variable has the device and inode of the stream to the journal.
bool isSystemJournal(int fd, const Environment& environment) {
    struct stat stream{};
    if (::fstat(fd, &stream) != 0) return false;
    return environmentValue(environment, "JOURNAL_STREAM") ==
           std::to_string(stream.st_dev) + ":" + std::to_string(stream.st_ino);
}

char priorityOf(EventCode code) {
    switch (code) {
        case EventCode::programAnotherCopy:
        case EventCode::homeUnusable:
        case EventCode::installRefused:
        case EventCode::helperStartFailed:
        case EventCode::helperMissing:
        case EventCode::driverStartFailed:
        case EventCode::driverGivenUp: return error;
        case EventCode::programWarning:
        case EventCode::helperEnded:
        case EventCode::driverEnded:
        case EventCode::pairingRefused: return warning;
        case EventCode::programStarted:
        case EventCode::programEnded:
        case EventCode::programSecondStart:
        case EventCode::programRelocation:
        case EventCode::installBegun:
        case EventCode::installStep:
        case EventCode::installDone:
        case EventCode::helperStarted:
        case EventCode::helperStopped:
        case EventCode::helperRestart:
        case EventCode::helperWaiting:
        case EventCode::driverStarted:
        case EventCode::driverStopped:
        case EventCode::driverRestart:
        case EventCode::endpointPublished:
        case EventCode::endpointWithdrawn:
        case EventCode::pairingOffered:
        case EventCode::pairingBegun:
        case EventCode::pairingPrompted:
        case EventCode::pairingConfirmed:
        case EventCode::pairingConnected:
        case EventCode::pairingEnded:
        case EventCode::pairingCancelled:
        case EventCode::switchesChanged:
        case EventCode::updateWaiting:
        case EventCode::updateInstalled: return information;
    }
    return information;
}

}  // namespace

ServiceOutput::ServiceOutput(int fd, const Environment& environment)
    : fd_(fd), toSystemJournal_(isSystemJournal(fd, environment)) {}

void ServiceOutput::event(const JournalEvent& event) {
    print(priorityOf(event.code), event.sentence);
}

void ServiceOutput::hint(std::string_view text) {
    print(information, text);
}

// A line that can't be written at once is lost: the main thread must not wait for the reader, and the
// program's own journal has the line.
void ServiceOutput::print(char priority, std::string_view text) const {
    const std::string prefix = toSystemJournal_ ? std::string("<") + priority + ">"
                                                : isoSeconds(std::chrono::system_clock::now()) + " ";
    pollfd stream{fd_, POLLOUT, 0};
    if (::poll(&stream, 1, 0) == 1) writeAll(fd_, prefix + std::string(text) + "\n");
}

}  // namespace tarnik
