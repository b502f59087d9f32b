#pragma once

#include <string>
#include <string_view>

namespace tarnik {

// Sends the state of the program to the service manager that started it, by the protocol of sd_notify(3).
// Does nothing without such a manager, as on macOS.
class ServiceNotification {
public:
    static constexpr const char* variable = "NOTIFY_SOCKET";

    // `address` is the value of the variable: a path, or "@NAME" in the abstract namespace.
    explicit ServiceNotification(std::string address) : address_(std::move(address)) {}

    void ready() const { send("READY=1"); }
    void stopping() const { send("STOPPING=1"); }
    void status(std::string_view line) const { send("STATUS=" + std::string(line)); }

private:
    // A message that can't be sent at once is lost: the main thread must not wait for the manager.
    void send(std::string_view assignment) const;

    const std::string address_;
};

}  // namespace tarnik
