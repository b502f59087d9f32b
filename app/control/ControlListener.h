#pragma once

#include <expected>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

#include "core/foundation/PrivateFolder.h"
#include "core/foundation/SystemError.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

// The listening end of the control socket: the file in its private folder, and the lock on that folder.
//
// Owned by ControlServer. A socket that a killed run left behind is replaced; it refuses connections, and its
// folder isn't locked. A live socket and any other file are never changed. The destructor removes the file
// if it is still the one that open() created.
class ControlListener {
public:
    struct Failure {
        enum class Reason { noPrivateFolder, pathTooLong, inUse, foreignFile, system };

        Reason reason = Reason::system;
        SystemError error;  // its `call` names the path
    };

    // Uses the first folder in which it can listen. Fails at once if another program listens in one of those
    // that it tries.
    static std::expected<ControlListener, Failure> open(const std::vector<std::string>& folders);

    ControlListener(ControlListener&& other) noexcept = default;
    ControlListener& operator=(ControlListener&& other) = delete;
    ControlListener(const ControlListener&) = delete;
    ControlListener& operator=(const ControlListener&) = delete;
    ~ControlListener();

    int descriptor() const { return socket_.get(); }
    const std::string& path() const { return path_; }

private:
    ControlListener(PrivateFolder folder, std::string path)
        : folder_(std::move(folder)), path_(std::move(path)) {}

    static std::expected<ControlListener, Failure> openIn(const std::string& folder);
    std::expected<void, Failure> makeRoom() const;
    std::expected<void, Failure> listen();
    std::unexpected<Failure> failed(Failure::Reason reason, const char* call) const;

    PrivateFolder folder_;  // locked
    std::string path_;
    UniqueFd socket_;  // empty after a move
    dev_t device_ = 0;
    ino_t inode_ = 0;
};

// Returns a lower-case line for the log.
std::string describe(const ControlListener::Failure& failure);

}  // namespace tarnik
