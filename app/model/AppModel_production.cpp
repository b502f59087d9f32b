#include <utility>

#include "app/model/AppModel.h"
#include "core/foundation/Http.h"

namespace tarnik {

AppModelDeps AppModelDeps::production(AppPlatform platform) {
    return {
        .platform = std::move(platform),
        .supervisor = NodeSupervisorDeps::production(),
        .driver = DriverHostDeps::production(),
        .installer = NodeInstallerDeps::production(),
        .launchd = LaunchdTakeover::Deps::production(),
        .fetchAnswer =
            [](const std::string& url) { return Http::fetch(url, {.bodyBytes = JoinLink::maxAnswerBytes}); },
        .activity = &ActivitySources::production,
        .makeQueue = &SerialQueue::withThread};
}

}  // namespace tarnik
