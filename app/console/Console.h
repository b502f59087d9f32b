#pragma once

#include <memory>
#include <optional>
#include <string>

#include "app/console/ConsoleDriver.h"
#include "app/console/ConsoleLoop.h"
#include "app/console/ConsoleOutput.h"
#include "app/console/PairingTranscript.h"
#include "core/foundation/Url.h"
#include "core/node/NodeInstaller.h"
#include "core/node/NodeSupervisor.h"

namespace tarnik {

// The terminal face: shows what the supervisor does, line by line, and passes on what the person types.
//
// Owned by main(), and used on its thread, which never waits: what may take long runs on two queues, one for
// the supervisor (stopping a helper takes up to 20 s) and one for the network.
class Console {
public:
    // What the console runs, and for whom.
    struct Machine {
        NodeHome home;
        std::string userFolder;
        Environment inherited;
        Url webOrigin;
        NodeInstaller::Settings install;
        NodeSupervisorDeps supervisor;
        ConsoleDriver::Setup driver;
        std::string keepAwakePath;  // the executable whose processes hold the machine awake
    };

    Console(std::shared_ptr<ConsoleLoop> loop, Machine machine);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // Installs the helper if there is none, starts it, and pairs with the link if one is given.
    void start(std::optional<std::string> link);

    void onLine(const std::string& line);
    void onLineTooLong();

    // Stops the helper and ends the loop. Asked again while the helper takes its time, ends the program at
    // once; the helper then notices the end of its input.
    void onSignal(int signal);
    void quit();

    // Quits, but lets an install that has begun come to its end first.
    void onEndOfInput();

    int exitStatus() const { return exitStatus_; }

    // A transfer goes on that may take long to end. It leaves nothing behind that matters, and nobody should
    // wait.
    bool waitsForNetwork() const { return setup_ == Setup::installing || checkingLink_; }

private:
    enum class Setup { installing, ready, failed };

    void setupEnded(const std::optional<InstallError>& error, const std::optional<std::string>& link);
    // Whether a refused link ends the program, as one given at the start does, or only earns a message.
    enum class Refusal { ends, isTold };

    void pair(const std::string& link, Refusal refusal);
    void refuse(const std::string& why, Refusal refusal);
    void linkChecked(const std::optional<Url>& joinURL, Refusal refusal);
    void beginPairing(const std::string& joinURL);
    void confirm(bool askedInWords);
    void cancel();
    void setSwitch(const std::string& words);
    void showStatus();
    void showSample();
    void showEndpoint(const std::optional<CuaDriverEndpoint>& endpoint);
    void showUpdate(const PairingSession::Snapshot& snapshot, PairingTranscript& transcript);
    void showState(const NodeState& state);
    void showError(const std::string& text);

    const std::shared_ptr<ConsoleLoop>
        loop_;  // sessions hold it weakly: one may end after the program's loop
    const Machine machine_;
    ConsoleOutput output_;
    Setup setup_ = Setup::installing;
    bool checkingLink_ = false;
    bool pairing_ = false;
    bool inputEnded_ = false;
    bool quitting_ = false;
    int restarts_ = 0;
    int exitStatus_ = 0;
    const std::shared_ptr<SerialQueue> network_;
    const std::shared_ptr<SerialQueue> work_;
    NodeSupervisor supervisor_;
    ConsoleDriver driver_;
    std::shared_ptr<PairingSession> session_;  // touched only on work_
};

}  // namespace tarnik
