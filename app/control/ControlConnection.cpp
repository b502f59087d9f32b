#include "app/control/ControlConnection.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <poll.h>
#include <sys/socket.h>

#include "app/control/LocalSocket.h"
#include "app/texts/ControlTexts.h"

namespace tarnik {

ControlConnection::ControlConnection(UniqueFd socket, ControlLimits limits)
    : socket_(std::move(socket)), limits_(limits), due_(after(steadyNow(), limits.request)) {}

bool ControlConnection::wantsInput() const {
    return !inputEnded_ && turn_ == Turn::client && !input_.contains('\n');
}

short ControlConnection::events() const {
    return static_cast<short>((wantsInput() ? POLLIN : 0) | (output_.empty() ? 0 : POLLOUT));
}

std::optional<TimePoint> ControlConnection::due() const {
    if (output_.empty() && (turn_ == Turn::program || stream_)) return std::nullopt;
    return due_;
}

void ControlConnection::read() {
    if (!wantsInput()) return;
    std::array<char, 16'384> buffer{};
    const ssize_t count = ::recv(socket_.get(), buffer.data(), buffer.size(), 0);
    if (count < 0) {
        broken_ = errno != EAGAIN && errno != EINTR;
        return;
    }
    // A client that has closed its side doesn't follow a stream.
    if (count == 0) {
        inputEnded_ = true;
        broken_ |= stream_.has_value();
    }
    input_.append(buffer.data(), static_cast<std::size_t>(count));
}

std::optional<std::string> ControlConnection::nextLine() {
    if (turn_ != Turn::client) return std::nullopt;
    const auto end = std::min(input_.find('\n'), input_.size());
    const bool isTooLong = end > ControlProtocol::maxRequestBytes;
    if (end == input_.size() && !isTooLong) return std::nullopt;
    if (isTooLong) {
        reject(ControlErrors::tooLong, ControlTexts::requestTooLong);
        return std::nullopt;
    }
    std::string line = input_.substr(0, end);
    input_.erase(0, end + 1);
    return line;
}

bool ControlConnection::beginRequest(std::int64_t id) {
    if (stream_ == id) {
        reject(ControlErrors::malformed, ControlTexts::idInUse);
        return false;
    }
    turn_ = Turn::program;
    return true;
}

void ControlConnection::reject(std::string_view code, std::string_view message) {
    inputEnded_ = true;
    input_.clear();
    add(ControlProtocol::printError(0, {std::string(code), std::string(message)}), 0,
        ControlAnswer::Position::last);
}

// The first answer to a request ends its execution, also if it opens a stream.
void ControlConnection::add(const std::string& line, std::int64_t id, ControlAnswer::Position position) {
    const bool isReply = stream_ != id;
    if (position == ControlAnswer::Position::update) stream_ = id;
    if (isReply) {
        turn_ = Turn::reader;
        queue(line);
    } else if (position == ControlAnswer::Position::last) {
        stream_.reset();
        update_.reset();
        queue(line);
    } else if (output_.empty()) {
        queue(line);
    } else {
        update_ = line;
    }
}

void ControlConnection::queue(const std::string& line) {
    if (output_.empty()) due_ = after(steadyNow(), limits_.answer);
    output_ += line;
    output_ += '\n';
}

void ControlConnection::write() {
    while (!output_.empty()) {
        const ssize_t count = LocalSocket::send(socket_.get(), output_);
        if (count < 0) {
            broken_ |= errno != EAGAIN && errno != EINTR;
            return;
        }
        output_.erase(0, static_cast<std::size_t>(count));
        if (!output_.empty()) continue;
        if (turn_ == Turn::reader) turn_ = Turn::client;
        due_ = after(steadyNow(), limits_.request);
        if (const auto update = std::exchange(update_, std::nullopt)) queue(*update);
    }
}

bool ControlConnection::isOver(TimePoint now) const {
    if (broken_) return true;
    if (const auto deadline = due(); deadline && now >= *deadline) return true;
    return inputEnded_ && turn_ == Turn::client && output_.empty() && !input_.contains('\n');
}

}  // namespace tarnik
