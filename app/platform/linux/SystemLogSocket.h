#pragma once

#include <memory>
#include <string>

#include "app/platform/SystemLog.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Sends lines to the system's log through its datagram socket. Call from any thread. Doesn't block. A line
// that the socket can't accept at once is dropped.
class SystemLogSocket {
public:
    static constexpr const char* standardPath = "/dev/log";
    static constexpr std::size_t maxLineLength = 2000;  // in characters

    explicit SystemLogSocket(std::string path);

    void write(const std::string& category, const std::string& message) const;

    // Returns a log function that shares ownership of the socket.
    static SystemLog channel(std::shared_ptr<const SystemLogSocket> socket, const std::string& category);

private:
    const std::string path_;
    const UniqueFd socket_;
};

}  // namespace tarnik
