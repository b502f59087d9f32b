#pragma once

#include <memory>
#include <string>

#include "app/platform/SystemLog.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Sends lines to the system's log, whichever program reads its socket. Any thread; never blocks: what can't
// be taken at once is dropped.
class SystemLogSocket {
public:
    static constexpr const char* standardPath = "/dev/log";
    static constexpr std::size_t longestLine = 2000;  // characters

    explicit SystemLogSocket(std::string path);

    void write(const std::string& category, const std::string& message) const;

    // A channel keeps the socket open.
    static SystemLog channel(std::shared_ptr<const SystemLogSocket> socket, const std::string& category);

private:
    const std::string path_;
    const UniqueFd socket_;
};

}  // namespace tarnik
