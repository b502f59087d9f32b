#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/AppDelegate.h"
#include "app/JournalFacts.h"
#include "app/NodeHomeOwner.h"
#include "app/ProgramStart.h"
#include "app/control/ControlService.h"
#include "app/journal/Journal.h"
#include "app/model/AppModel.h"
#include "app/options/CommandLine.h"
#include "app/platform/AppPlatform.h"
#include "app/relocation/Relocator.h"

namespace tarnik {

// Creates and owns the journal, the model, the relocator, the lock of the node home, the delegate, and the
// control socket. Works with each face: the window, the console and the
// service.
//
// Owned by runDesktop(), runConsole() or runServe(). Main thread only. The constructor creates the model. The
// caller then creates the face, and attach() creates the delegate.
class Application {
public:
    // The operations of the system on which the face runs.
    struct Platform {
        AppPlatform model;  // `detach` is set by the constructor
        DriverHostDeps driver = DriverHostDeps::production();
        std::string installPath{TarnikIdentity::installPath};
        BundleOperations bundles = {};
        UpdateFramework updates = {};
        SystemLog updaterLog;
        SystemEvents events;
    };

    // The operations and settings of the face.
    struct Face {
        NodeHomeOwner::Face kind = NodeHomeOwner::Face::window;
        Presentation presentation;
        bool showsWindow = false;            // see AppDelegateDeps
        std::function<void()> onReady = {};  // called when the model has started
    };

    Application(const CommandLine& line, HostEnvironment host, const ProgramLocation& place,
                Platform platform);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    const std::shared_ptr<AppModel>& model() const { return model_; }
    const std::shared_ptr<Journal>& journal() const { return journal_; }

    // Creates the delegate. The delegate uses the face until the event loop has ended. Call once.
    AppDelegate& attach(Face face);

    // Gathers the redacted report and passes it to `done` on the main thread, or a sentence that says why it
    // couldn't. This takes a second, and up to 20 s without a network.
    void makeReport(const std::function<void(const std::expected<std::string, std::string>&)>& done) const;

    // Starts to receive links, and posts the rest of the launch to the event loop.
    void launch();

    // Closes the control socket, records the end and returns `exitStatus`. If a background task such as a
    // download still runs, ends the process with this status instead of returning. Tasks are never joined,
    // and each can be interrupted at any moment. The process ends at most 5 s after this call.
    int finish(int exitStatus);

private:
    void startControl(NodeHomeOwner::Face face);
    std::shared_ptr<AppModel> makeModel(const CommandLine& line, HostEnvironment host) const;
    SystemLog warningLog() const;

    const BackgroundTasks tasks_;
    const ProgramLocation place_;
    Platform platform_;
    std::optional<NodeHomeOwner> homeOwner_;  // destroyed after model_, because the model uses the home
    const std::shared_ptr<Journal> journal_;  // also held by the operations that record
    const std::shared_ptr<AppModel> model_;
    JournalFacts facts_;
    std::optional<Relocator> relocator_;
    std::optional<AppDelegate> delegate_;
    std::optional<ControlService> control_;  // while the program owns its node home
};
}  // namespace tarnik
