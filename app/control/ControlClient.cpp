#include "app/control/ControlClient.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include <poll.h>
#include <sys/socket.h>

#include "app/control/ControlFolder.h"
#include "app/control/LocalSocket.h"

namespace tarnik {

using Failure = ControlClient::Failure;

std::expected<ControlClient, Failure> ControlClient::connect(const std::vector<std::string>& folders) {
    for (const auto& folder : folders) {
        auto socket = LocalSocket::connect(ControlFolder::socketPath(folder));
        if (socket && LocalSocket::isSameUser(socket->get())) return ControlClient(*std::move(socket));
        if (!socket && socket.error().code == EAGAIN) return std::unexpected(Failure::timedOut);
    }
    return std::unexpected(Failure::notRunning);
}

std::expected<std::int64_t, Failure> ControlClient::send(ControlRequest request) {
    request.id = ++lastID_;
    const std::string line = ControlProtocol::print(request) + "\n";
    const TimePoint deadline = after(steadyNow(), defaultTimeout);
    std::string_view rest = line;
    while (!rest.empty()) {
        const ssize_t count = LocalSocket::send(socket_.get(), rest);
        if (count >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) {
            if (!wait(POLLOUT, deadline)) return std::unexpected(Failure::timedOut);
        } else if (errno != EINTR) {
            return std::unexpected(Failure::ended);
        }
    }
    return request.id;
}

std::expected<ControlAnswer, Failure> ControlClient::receive(std::optional<Seconds> timeout) {
    const auto deadline = timeout ? std::optional(after(steadyNow(), *timeout)) : std::nullopt;
    while (true) {
        if (const auto line = takeLine()) {
            auto answer = ControlProtocol::parseAnswer(*line);
            if (!answer) return std::unexpected(Failure::malformed);
            return *std::move(answer);
        }
        if (input_.size() > ControlProtocol::maxAnswerBytes) return std::unexpected(Failure::malformed);
        if (!wait(POLLIN, deadline)) return std::unexpected(Failure::timedOut);
        std::array<char, 16'384> buffer{};
        const ssize_t count = ::recv(socket_.get(), buffer.data(), buffer.size(), 0);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) continue;
        if (count <= 0) return std::unexpected(Failure::ended);
        input_.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

std::expected<ControlAnswer, Failure> ControlClient::ask(ControlRequest request, Seconds timeout) {
    if (const auto sent = send(std::move(request)); !sent) return std::unexpected(sent.error());
    return receive(timeout);
}

bool ControlClient::waitForInput(int other) const {
    if (input_.contains('\n')) return false;
    std::array<pollfd, 2> entries{pollfd{socket_.get(), POLLIN, 0}, pollfd{other, POLLIN, 0}};
    while (::poll(entries.data(), entries.size(), -1) < 0 && errno == EINTR) {}
    return entries[0].revents == 0;
}

// Returns false if the deadline has passed.
bool ControlClient::wait(short event, std::optional<TimePoint> deadline) const {
    while (true) {
        int milliseconds = -1;
        if (deadline) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - steadyNow()).count();
            milliseconds = static_cast<int>(std::clamp<decltype(left)>(left, 0, INT_MAX));
        }
        pollfd entry{socket_.get(), event, 0};
        const int ready = ::poll(&entry, 1, milliseconds);
        if (ready > 0) return true;
        if (ready == 0) return false;
        if (errno != EINTR) return true;  // the next call on the socket fails
    }
}

std::optional<std::string> ControlClient::takeLine() {
    const auto end = input_.find('\n');
    if (end == std::string::npos) return std::nullopt;
    std::string line = input_.substr(0, end);
    input_.erase(0, end + 1);
    return line;
}

}  // namespace tarnik
