#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "app/control/ControlProtocol.h"
#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

// The time limits of a connection to the control socket.
struct ControlLimits {
    Seconds request = Seconds(10);  // for the next complete request, while none is running
    Seconds answer = Seconds(10);   // for the client to read the answers
};

// One client of the control socket: the bytes of its next requests, and the answers that it has not read yet.
//
// Owned by ControlClients and used on the server's thread only. Its memory is bounded: it stops reading while
// a request is running, while a reply is not sent completely, or while a complete line waits. A stream is a
// request with several answers, its updates. A newer update replaces one that has not begun to be sent.
class ControlConnection {
public:
    ControlConnection(UniqueFd socket, ControlLimits limits);

    int descriptor() const { return socket_.get(); }

    // Returns the events for poll(2); 0 if the connection waits for the program.
    short events() const;

    // Returns the time at which the connection times out. Returns std::nullopt while nothing waits to be sent
    // and a request is running or a stream is open.
    std::optional<TimePoint> due() const;

    void read();
    void write();

    // Returns the next complete line, or std::nullopt if none waits or the current reply is not sent
    // yet. Answers a line that is too long with an error, and reads no more.
    std::optional<std::string> nextLine();

    // Adds the line of an answer. Returns at once.
    void add(const std::string& line, std::int64_t id, ControlAnswer::Position position);

    // Call before the program executes a request of nextLine(). Returns false if `id` is the id of the
    // open stream, because the client couldn't distinguish the answers of the two. In this case the
    // connection answers with an error and reads no more.
    bool beginRequest(std::int64_t id);

    // Returns true if the connection has to be closed: it failed, timed out, or has nothing more to do.
    bool isOver(TimePoint now) const;

private:
    // The side that acts next: the client sends a request, the program executes it, or the client reads the
    // reply.
    enum class Turn { client, program, reader };

    bool wantsInput() const;
    void reject(std::string_view code, std::string_view message);
    void queue(const std::string& line);

    UniqueFd socket_;
    const ControlLimits limits_;
    Turn turn_ = Turn::client;
    std::string input_;
    std::string output_;                  // is being sent
    std::optional<std::string> update_;   // of the stream; sent after output_
    std::optional<std::int64_t> stream_;  // the id of the open stream
    bool inputEnded_ = false;
    bool broken_ = false;
    TimePoint due_;
};

}  // namespace tarnik
