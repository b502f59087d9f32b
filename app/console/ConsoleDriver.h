#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/console/ConsoleLoop.h"
#include "app/console/ConsoleOutput.h"
#include "core/driver/DriverHost.h"
#include "core/switches/SwitchSnapshot.h"

namespace tarnik {

// The console's desktop driver, and the two switches that it needs, which are only simulated here.
//
// Owned by the console, used on the main thread. What the driver host may take long for runs on a queue.
class ConsoleDriver {
public:
    struct Setup {
        DriverHost::Setup host;
        SwitchSnapshot switches;  // at the start
        bool showsOutput = false;
    };

    // What a driver costs and where it is, for a line of status.
    struct Status {
        std::optional<pid_t> pid;
        std::optional<CuaDriverEndpoint> endpoint;
    };

    // `onEndpointChange` runs on the driver host's queue. `output` outlives this.
    ConsoleDriver(std::shared_ptr<ConsoleLoop> loop, ConsoleOutput& output, Setup setup,
                  DriverHost::OnEndpointChange onEndpointChange);
    ~ConsoleDriver();
    ConsoleDriver(const ConsoleDriver&) = delete;
    ConsoleDriver& operator=(const ConsoleDriver&) = delete;

    // Starts the driver if the switches are on.
    void start();

    void set(Switch which, bool on);
    const SwitchSnapshot& switches() const { return switches_; }

    // How often the driver failed or ended by itself.
    int failures() const { return failures_; }

    // Runs `task` where the host's calls may block, behind what was asked of the driver before.
    void post(std::function<void(DriverHost&)> task);

    // Stops the driver. Blocks for up to 8 s, and longer when it is just starting. Call from any thread.
    void shutdown() { host_.shutdown(); }

private:
    DriverHostDeps makeDeps(bool showsOutput) const;
    void applySwitches();
    void showMessage(const std::string& text);

    const std::shared_ptr<ConsoleLoop> loop_;
    ConsoleOutput& output_;
    SwitchSnapshot switches_;
    std::optional<bool> enabled_;  // as the host was last told
    int failures_ = 0;
    const std::shared_ptr<SerialQueue> work_;
    DriverHost host_;
};

}  // namespace tarnik
