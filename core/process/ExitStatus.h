#pragma once

#include <string>

namespace tarnik {

// The end of a child: an exit code or a signal.
struct ExitStatus {
    enum class Kind { exited, signaled };

    Kind kind = Kind::exited;
    int number = 0;  // the exit code, or the signal's number

    static constexpr ExitStatus exited(int code) { return {Kind::exited, code}; }
    static constexpr ExitStatus signaled(int signal) { return {Kind::signaled, signal}; }

    // Decodes the status word that waitpid(2) stores.
    static constexpr ExitStatus fromWaitStatus(int word) {
        const int signal = word & 0x7f;
        return signal != 0 ? signaled(signal) : exited((word >> 8) & 0xff);
    }

    constexpr bool succeeded() const { return *this == exited(0); }

    bool operator==(const ExitStatus&) const = default;
};

// Returns a text such as "exit 3" or "signal 9".
std::string describe(const ExitStatus& status);

}  // namespace tarnik
