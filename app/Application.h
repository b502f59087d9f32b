#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/AppDelegate.h"
#include "app/CommandLine.h"
#include "app/NodeHomeOwner.h"
#include "app/ProgramStart.h"
#include "app/model/AppModel.h"
#include "app/platform/AppPlatform.h"
#include "app/platform/LoginItemService.h"
#include "app/relocation/Relocator.h"

namespace tarnik {

// Builds the model, the relocator, the owner of the node home, and the delegate with its updater, for either
// face, and owns them for the run.
//
// Owned by main(). Main thread only. First the model is made, then the face that shows it, then the delegate.
class Application {
public:
    // The operations of the system that a face runs on.
    struct Platform {
        AppPlatform model;  // `detach` is filled in here
        DriverHostDeps driver = DriverHostDeps::production();
        std::string installPath{TarnikIdentity::installPath};
        BundleOperations bundles = {};
        UpdateFramework updates = {};
        SystemLog updaterLog;
        LoginItemService loginItem = {};
        SystemEvents events;
    };

    // The face's part of the launch.
    struct Face {
        NodeHomeOwner::Face kind = NodeHomeOwner::Face::window;
        Presentation presentation;
        bool showsWindow = false;            // at launch, even if the user doesn't have to act
        std::function<void()> onReady = {};  // called when links are accepted
    };

    Application(const CommandLine& line, HostEnvironment host, const ProgramLocation& place,
                Platform platform);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    const std::shared_ptr<AppModel>& model() const { return model_; }

    // Makes the delegate for this face, which outlives the program's loop. Call once.
    AppDelegate& attach(Face face);

    // Accepts links, and posts the rest of the launch to the program's loop.
    void launch();

    // Returns `exitStatus`. Ends the process with it at once if a transfer is still running on another
    // thread: nobody waits for a transfer, and an interrupted one leaves nothing behind that matters.
    int finish(int exitStatus) const;

private:
    AppModelDeps modelDeps(const CommandLine& line) const;

    const BackgroundTasks tasks_;
    const ProgramLocation place_;
    Platform platform_;
    std::optional<NodeHomeOwner> homeOwner_;  // outlives model_, which uses the home
    const std::shared_ptr<AppModel> model_;
    std::optional<Relocator> relocator_;
    std::optional<AppDelegate> delegate_;
};

// Adds the application to the programs that start at login. Ignores a failure until the next launch. Blocks,
// perhaps for seconds; called on a background thread.
void ensureLoginItem(const LoginItemService& service);

}  // namespace tarnik
