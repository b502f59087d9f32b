#include "app/model/AppModelDeps.h"

#include <utility>

#include "core/foundation/Http.h"
#include "core/pairing/JoinLink.h"

namespace tarnik {

AppModelDeps AppModelDeps::production(AppPlatform platform, const BackgroundTasks& work) {
    return {.platform = std::move(platform),
            .supervisor = NodeSupervisorDeps::production(),
            .driver = DriverHostDeps::production(),
            .installer = NodeInstallerDeps::production(),
            .launchd = LaunchdTakeover::Deps::production(),
            .fetchAnswer = [](const std::string& url) -> std::optional<std::string> {
                const auto answer = Http::fetch(url, {.bodyBytes = JoinLink::maxAnswerBytes});
                return answer ? std::optional(*answer) : std::nullopt;
            },
            .activity = &ActivitySources::production,
            .detach = [work](const std::string& label,
                             BackgroundTasks::Task task) { return work.start(label, std::move(task)); },
            .makeQueue = &SerialQueue::withThread};
}

}  // namespace tarnik
