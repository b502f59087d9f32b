#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <string>

#include <sys/types.h>

#include "app/platform/BundleOperations.h"
#include "app/platform/MainThread.h"
#include "app/relocation/Pause.h"
#include "core/foundation/SerialQueue.h"
#include "core/foundation/SystemError.h"
#include "core/process/SpawnRequest.h"
#include "core/relocation/RecordLine.h"

namespace tarnik {

// Everything Relocator asks of the outside.
struct RelocatorDeps {
    BundleOperations bundles;
    MainThread mainThread;
    std::string applicationSupport;  // where the record is kept
    std::string installPath;
    pid_t pid = 0;  // of this process
    bool isDevelopmentBuild = false;

    // Starts a child that goes on when we have ended.
    std::function<std::expected<void, SystemError>(const SpawnRequest&)> spawn;
    Pause pause;
    std::function<Relocation::RecordTime()> now;
    std::function<std::shared_ptr<SerialQueue>(const std::string& label)> makeQueue;

    // The product's install path, this process, real children and clocks.
    static RelocatorDeps production(BundleOperations bundles, MainThread mainThread,
                                    std::string applicationSupport);
};

}  // namespace tarnik
