#include <utility>

#include "app/model/AppModel.h"
#include "core/foundation/Http.h"

namespace tarnik {

AppModelDeps AppModelDeps::production(AppPlatform platform, const ProxyLookup& proxies) {
    return {.platform = std::move(platform),
            .supervisor = NodeSupervisorDeps::production(),
            .driver = DriverHostDeps::production(),
            .installer = NodeInstallerDeps::production(proxies),
            .launchd = LaunchdTakeover::Deps::production(),
            .fetchAnswer =
                [proxies](const std::string& url) {
                    return Http::fetch(url, {.bodyBytes = JoinLink::maxAnswerBytes, .proxies = proxies});
                },
            .activity = &ActivitySources::production,
            .makeQueue = &SerialQueue::withThread};
}

}  // namespace tarnik
