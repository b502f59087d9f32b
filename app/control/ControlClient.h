#pragma once

#include <expected>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/control/ControlProtocol.h"
#include "core/foundation/SystemError.h"
#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

// A connection to the running program, for commands. Its operations block. One thread.
class ControlClient {
public:
    enum class Failure {
        notRunning,  // no program listens
        timedOut,
        ended,      // the program closed the connection
        malformed,  // the answer is not of this version of the protocol
    };

    static constexpr Seconds defaultTimeout = Seconds(10);

    // Tries each folder until a program of this user accepts a connection.
    static std::expected<ControlClient, Failure> connect(const std::vector<std::string>& folders);

    // Sends the request. Its id is replaced; the answers have the id that is returned.
    std::expected<std::int64_t, Failure> send(ControlRequest request);

    // Waits for the next answer. Without a timeout it waits until the program answers or ends.
    std::expected<ControlAnswer, Failure> receive(std::optional<Seconds> timeout = defaultTimeout);

    // Sends the request and waits for its only answer.
    std::expected<ControlAnswer, Failure> ask(ControlRequest request, Seconds timeout = defaultTimeout);

    // Waits until the program sends something, or until `other` can be read. Returns true for the latter.
    bool waitForInput(int other) const;

private:
    explicit ControlClient(UniqueFd socket) : socket_(std::move(socket)) {}

    bool wait(short event, std::optional<TimePoint> deadline) const;
    std::optional<std::string> takeLine();

    UniqueFd socket_;
    std::string input_;
    std::int64_t lastID_ = 0;
};

}  // namespace tarnik
