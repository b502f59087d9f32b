#include "app/control/ControlListener.h"

#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "app/control/ControlFolder.h"
#include "app/control/LocalSocket.h"

namespace tarnik {
namespace {

using Failure = ControlListener::Failure;
using Status = struct stat;

constexpr mode_t socketMode = 0600;
constexpr int waitingConnections = 64;

// Does not follow a link.
std::optional<Status> statusIn(const PrivateFolder& folder) {
    Status found{};
    if (::fstatat(folder.descriptor(), ControlFolder::socketName, &found, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return found;
}

// Returns false if another program has locked the folder. A file system without locks counts as unlocked.
bool lock(const PrivateFolder& folder) {
    int result = 0;
    do result = ::flock(folder.descriptor(), LOCK_EX | LOCK_NB);
    while (result != 0 && errno == EINTR);
    return result == 0 || errno != EWOULDBLOCK;
}

}  // namespace

std::expected<ControlListener, Failure> ControlListener::open(const std::vector<std::string>& folders) {
    auto opened = std::expected<ControlListener, Failure>(
        std::unexpect, Failure{.reason = Failure::Reason::noPrivateFolder, .error = {}});
    for (const auto& folder : folders) {
        if (auto tried = openIn(folder); tried || tried.error().reason == Failure::Reason::inUse)
            return tried;
        else
            opened = std::unexpected(tried.error());
    }
    return opened;
}

std::expected<ControlListener, Failure> ControlListener::openIn(const std::string& folder) {
    auto path = ControlFolder::socketPath(folder);
    const auto refused = [&](Failure::Reason reason, int code) {
        return std::unexpected(
            Failure{.reason = reason, .error = {.call = "listen at " + path, .code = code}});
    };
    if (!LocalSocket::address(path)) return refused(Failure::Reason::pathTooLong, ENAMETOOLONG);
    auto opened = PrivateFolder::open(folder);
    if (!opened) return refused(Failure::Reason::noPrivateFolder, EACCES);
    if (!lock(*opened)) return refused(Failure::Reason::inUse, EADDRINUSE);
    ControlListener listener(*std::move(opened), std::move(path));
    if (const auto made = listener.makeRoom(); !made) return std::unexpected(made.error());
    if (const auto made = listener.listen(); !made) return std::unexpected(made.error());
    return listener;
}

ControlListener::~ControlListener() {
    if (!socket_) return;
    const auto found = statusIn(folder_);
    if (found && found->st_dev == device_ && found->st_ino == inode_)
        folder_.remove(ControlFolder::socketName);
}

std::unexpected<Failure> ControlListener::failed(Failure::Reason reason, const char* call) const {
    return std::unexpected(Failure{.reason = reason, .error = SystemError::last(call, path_)});
}

// Removes the socket of a killed run.
std::expected<void, Failure> ControlListener::makeRoom() const {
    const auto found = statusIn(folder_);
    if (!found)
        return errno == ENOENT ? std::expected<void, Failure>() : failed(Failure::Reason::system, "stat");
    if (!S_ISSOCK(found->st_mode) || found->st_uid != ::geteuid()) {
        errno = EEXIST;
        return failed(Failure::Reason::foreignFile, "listen at");
    }
    const auto connected = LocalSocket::connect(path_);
    if (connected || connected.error().code != ECONNREFUSED) {
        errno = EADDRINUSE;
        return failed(Failure::Reason::inUse, "listen at");
    }
    folder_.remove(ControlFolder::socketName);
    return {};
}

// bind() fails if the path exists, even as a link.
std::expected<void, Failure> ControlListener::listen() {
    const auto place = LocalSocket::address(path_);
    UniqueFd socket = LocalSocket::open();
    if (!socket || !place) return failed(Failure::Reason::system, "socket");
    if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&*place), sizeof *place) != 0)
        return failed(Failure::Reason::system, "bind");
    const auto found = statusIn(folder_);
    if (!found || !S_ISSOCK(found->st_mode)) return failed(Failure::Reason::system, "stat");
    device_ = found->st_dev;
    inode_ = found->st_ino;
    socket_ = std::move(socket);  // from here the destructor removes the file
    // May fail where /proc isn't mounted. The folder keeps other users out all the same.
    (void)!::fchmodat(folder_.descriptor(), ControlFolder::socketName, socketMode, AT_SYMLINK_NOFOLLOW);
    if (::listen(socket_.get(), waitingConnections) != 0) return failed(Failure::Reason::system, "listen at");
    return {};
}

std::string describe(const Failure& failure) {
    const std::string prefix = "commands in a terminal can't reach this program: ";
    using enum Failure::Reason;
    switch (failure.reason) {
        case noPrivateFolder: return prefix + "no private folder (" + failure.error.call + ")";
        case pathTooLong: return prefix + "the path is too long (" + failure.error.call + ")";
        case inUse: return prefix + "they reach another one (" + failure.error.call + ")";
        case foreignFile: return prefix + "another file is in the way (" + failure.error.call + ")";
        case system: break;
    }
    return prefix + tarnik::describe(failure.error);
}

}  // namespace tarnik
