#include <utility>

#include <unistd.h>

#include "app/bundle/BuildKind.h"
#include "app/relocation/Relocator.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/process/Spawner.h"

namespace tarnik {

RelocatorDeps RelocatorDeps::production(BundleOperations bundles, MainThread mainThread,
                                        std::string applicationSupport) {
    return {.bundles = std::move(bundles),
            .mainThread = std::move(mainThread),
            .applicationSupport = std::move(applicationSupport),
            .installPath = std::string(TarnikIdentity::installPath),
            .pid = ::getpid(),
            .isDevelopmentBuild = tarnik::isDevelopmentBuild(),
            .spawn = [](const SpawnRequest& request) -> std::expected<void, SystemError> {
                const auto child = Spawner::spawn(request);
                if (!child) return std::unexpected(child.error());
                return {};
            },
            .sleep = InterruptibleSleep::production(),
            .now = [] { return Relocation::RecordTime::clock::now(); },
            .makeQueue = SerialQueue::withThread};
}

}  // namespace tarnik
