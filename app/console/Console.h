#pragma once

#include <memory>
#include <string>

#include "app/console/ConsoleLoop.h"
#include "app/console/ConsoleOutput.h"
#include "app/console/PairingTranscript.h"
#include "core/node/NodeSupervisor.h"

namespace tarnik {

// The terminal face: shows what the supervisor does, line by line, and passes on what the person types.
//
// Owned by main(), and used on its thread, which never waits: what may take long (stopping a helper takes up
// to 20 s) runs on a queue, one command after the other.
class Console {
public:
    Console(std::shared_ptr<ConsoleLoop> loop, NodeHome home, Environment inherited, NodeSupervisorDeps deps);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // Wants the node.
    void start();

    void onLine(const std::string& line);
    void onLineTooLong();

    // Stops the helper and ends the loop. Asked again while the helper takes its time, ends the program at
    // once; the helper then notices the end of its input.
    void onSignal(int signal);
    void quit();

private:
    void pair(const std::string& link);
    void confirm(bool askedInWords);
    void cancel();
    void showStatus();
    void showUpdate(const PairingSession::Snapshot& snapshot, PairingTranscript& transcript);
    void showState(const NodeState& state);
    void showError(const std::string& text);

    const std::shared_ptr<ConsoleLoop>
        loop_;  // sessions hold it weakly: one may end after the program's loop
    ConsoleOutput output_;
    const std::string homePath_;
    int restarts_ = 0;
    bool quitting_ = false;
    const std::shared_ptr<SerialQueue> work_;
    NodeSupervisor supervisor_;
    std::shared_ptr<PairingSession> session_;  // touched only on work_
};

}  // namespace tarnik
